// A table of 10,000 rows: from nothing to its first picture, and how many pictures a second it is scrolled
// at, beside a bare list of the same rows, in turns: lists [--quick].
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include "bench/window/BareWindow.h"
#include "bench/window/Figures.h"
#include "bench/window/Scrolling.h"
#include "bench/window/WindowWithoutDisplay.h"
#include "ui/ListModel.h"
#include "ui/Screen.h"
#include "ui/ScreenId.h"
#include "ui/SystemFont.h"
#include "ui/Table.h"

namespace {

using namespace kestrix;
using bench::Clock;

using bench::kByFinger;
using bench::kByPage;
using bench::kRows;

class RowsScreen final : public ui::Screen {
  public:
    RowsScreen() : Screen(ui::ScreenId::History) {
        for (int row = 0; row < kRows; ++row) {
            const QString number = QString::number(row);
            rows.append({.texts = {QStringLiteral("S_") + number, QStringLiteral("LOOP/PFC"),
                                   QStringLiteral("L-PE, 50 V"), number + QStringLiteral(" Ω, 371 A"),
                                   QStringLiteral("2026-01-15 10:00:00"), QStringLiteral(" ")},
                         .mark = {}});
        }
    }
    ui::ListModel rows{{{QStringLiteral("1"), QStringLiteral("1"), 0, 64},
                        {QStringLiteral("2"), QStringLiteral("2"), 64, 64},
                        {QStringLiteral("3"), QStringLiteral("3"), 128, 64},
                        {QStringLiteral("4"), QStringLiteral("4"), 192, 64},
                        {QStringLiteral("5"), QStringLiteral("5"), 256, 64},
                        {QStringLiteral("6"), QStringLiteral("6"), 320, 64}}};
    ui::Table table{*this, "rows", rows};
};

std::unique_ptr<QQuickView> ourWindow(RowsScreen& screen) {
    auto view = std::make_unique<QQuickView>();
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    view->resize(384, 682);
    view->engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    view->setInitialProperties({{QStringLiteral("screen"), QVariant::fromValue<ui::Screen*>(&screen)}});
    view->setSource(QUrl(QStringLiteral("qrc:/bench/TableOfRows.qml")));
    if (view->status() != QQuickView::Ready) std::exit(1);
    return view;
}

std::unique_ptr<QQuickView> bareWindow(RowsScreen& screen) {
    return std::make_unique<bench::BareWindow>(
        QStringLiteral("BareList"), QVariantMap{{QStringLiteral("rows"), QVariant::fromValue(&screen.rows)}});
}

struct Subject {
    const char* name;
    std::unique_ptr<QQuickView> (*open)(RowsScreen&);
    std::vector<double> openings;  // ms
    std::vector<double> byFinger;  // pictures a second
    std::vector<double> byPage;
};

double picturesASecond(QQuickItem& list, const int& pictures, double step, int count) {
    const Clock::time_point begun = Clock::now();
    for (int picture = 0; picture < count; ++picture) {
        const int before = pictures;
        list.setProperty("contentY", list.property("contentY").toDouble() + step);
        while (pictures == before) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return count * 1000 / bench::milliseconds(Clock::now() - begun);
}

void measure(Subject& subject, int count) {
    const Clock::time_point begun = Clock::now();
    RowsScreen screen;
    const auto view = subject.open(screen);
    int pictures = 0;
    QObject::connect(view.get(), &QQuickWindow::frameSwapped, view.get(), [&pictures] { ++pictures; });
    view->show();
    while (pictures == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    subject.openings.push_back(bench::milliseconds(Clock::now() - begun));
    auto* const list = view->rootObject()->findChild<QQuickItem*>(QStringLiteral("rows"));
    if (list == nullptr) std::exit(1);
    subject.byFinger.push_back(picturesASecond(*list, pictures, kByFinger, count));
    subject.byPage.push_back(picturesASecond(*list, pictures, kByPage, count / 2));
}

}  // namespace

int main(int argc, char** argv) {
    const bool quick = argc > 1 && std::string_view(argv[1]) == "--quick";
    bench::drawWithoutDisplay();
    const QGuiApplication application(argc, argv);
    ui::installSystemFont();
    Subject subjects[] = {{"bare list", bareWindow, {}, {}, {}}, {"table", ourWindow, {}, {}, {}}};
    for (int run = quick ? 1 : 9; run > 0; --run)
        for (Subject& subject : subjects) measure(subject, quick ? 20 : 300);
    std::printf("== %d rows of six texts, medians\n", kRows);
    for (const Subject& subject : subjects)
        std::printf("%-10s opens in %6.1f ms, %5.0f pictures a second by finger, %5.0f by page\n",
                    subject.name, bench::median(subject.openings), bench::median(subject.byFinger),
                    bench::median(subject.byPage));
    std::printf("(goals: opening at most 150 ms, scrolling at least 60 pictures a second)\n");
    return 0;
}
