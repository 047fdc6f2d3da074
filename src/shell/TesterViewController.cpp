#include "shell/TesterViewController.h"

#include <QDir>

#include <algorithm>
#include <utility>

#include "platform/AccessorySources.h"
#include "platform/AccessoryUri.h"

namespace kestrix::shell {
namespace {

using platform::Notification;
using platform::NotificationCenter;

constexpr int kNameFontSize = 16;
constexpr int kTextFontSize = 12;
constexpr double kLeastRowHeight = 30;
constexpr double kMostRowHeight = 120;
constexpr double kRowPadding = 8;
constexpr platform::Scheduler::Duration kRowsDelay{250};

// One of the kinds that there are, as the command line writes it: a serial port with its speed, say.
bool isUri(const std::string& text) {
    const auto uri = platform::parseAccessoryUri(text);
    const std::vector<platform::SourceKind> kinds = platform::sourceKinds();
    return uri && std::any_of(kinds.begin(), kinds.end(),
                              [&](const platform::SourceKind& kind) { return kind.scheme == uri->scheme; });
}

// A tilde at its beginning is the user's own folder, as he writes it in a terminal.
QString pathOf(QString text) {
    text = text.trimmed();
    if (text == u"~" || text.startsWith(QLatin1String("~/"))) text = QDir::homePath() + text.mid(1);
    return text;
}

}  // namespace

TesterViewController::TesterViewController(ui::ScreenId id, const ui::Services& services)
    : FramedScreen(id, services), all_(services.makeListings(), services.documents) {}

void TesterViewController::viewDidLoad() {
    lblTesterName.setFont(QStringLiteral("Arial"), kNameFontSize);
    for (ui::Label* label : {&lblTesterState, &lblAddress, &lblCapture})
        label->setFont(QStringLiteral("Arial"), kTextFontSize);
    for (ui::Label* label : {&lblTesterName, &lblTesterState, &lblAddress, &lblCapture})
        label->setTextColor(ui::Palette::textOnDark);
    lblAddress.setText(tr("Network"));
    address.setAccessibleName(tr("Address of a tester on the network"));
    address.setPlaceholder(tr("host:port"));
    address.setReturnAction([this] {
        pressConnect();
        return false;
    });
    btnConnect.setTitle(tr("Connect"));
    btnConnect.setAction([this] { pressConnect(); });
    lblCapture.setText(tr("Capture"));
    capture.setAccessibleName(tr("File of a capture"));
    capture.setPlaceholder(tr("file.kxc"));
    capture.setReturnAction([this] {
        pressOpen();
        return false;
    });
    btnOpen.setTitle(tr("Open"));
    btnOpen.setAction([this] { pressOpen(); });
    testers.setGrouped(true);
    testers.setLines(ui::Table::Lines::Below);
    testers.setChoice([this](int row) { choose(std::string(place(row).uri)); });
    all_.changed = [this] { showRowsSoon(); };
    // Whoever types does not want the screen to close under his hands.
    for (ui::TextField* field : {&address, &capture}) field->setEditAction([this] { chosen_.clear(); });
    NotificationCenter& center = NotificationCenter::defaultCenter();
    searches_ = center.addObserver(platform::kAccessorySearchDidChange,
                                   [this](const Notification&) { showSearch(); });
    comings_ =
        center.addObserver(platform::kAccessoryDidConnect, [this](const Notification&) { showSearch(); });
    showSearch();
}

void TesterViewController::say(const QString& what) {
    services_.notice.show(what, ui::testerMatter());
}

void TesterViewController::choose(const std::string& uri) {
    if (uri.empty()) return;
    const ui::ChosenTester chosen = services_.chooseTester(uri);
    if (!chosen.problem.empty()) return say(QString::fromStdString(chosen.problem));
    if (chosen.otherWindow) return say(tr("It has a window of its own, with its own records"));
    chosen_ = uri;
    showSearch();
}

void TesterViewController::pressConnect() {
    address.endEditing();
    const std::string text = address.text().trimmed().toStdString();
    if (platform::parseHostAndPort(text)) return choose("tcp://" + text);
    if (isUri(text)) return choose(text);
    say(tr("Type an address as in 192.168.1.20:4000"));
}

void TesterViewController::pressOpen() {
    capture.endEditing();
    const QString path = pathOf(capture.text());
    if (path.isEmpty()) return say(tr("Type the name of a capture's file"));
    const QString folder = services_.documents.path();
    choose(platform::captureUri(QDir::cleanPath(QDir(folder).absoluteFilePath(path)).toStdString()));
}

void TesterViewController::showSearch() {
    const ui::TesterWords words = ui::testerWords(services_.accessories);
    lblTesterName.setText(words.name.isEmpty() ? words.state : words.name);
    QStringList state;
    if (!words.name.isEmpty()) state << (words.connected ? words.state : tr("Disconnected"));
    if (!words.problem.isEmpty()) state << words.problem;
    QString line = state.join(QLatin1String(": "));
    if (!words.advice.isEmpty()) line += QLatin1String(". ") + words.advice;
    lblTesterState.setText(line);
    showRows();
    if (chosen_.empty() || !words.connected) return;
    chosen_.clear();
    if (!address.isEditing() && !capture.isEditing()) services_.navigation.dismiss(true);
}

QString TesterViewController::stateOf(const TesterPlace& place) const {
    for (const auto& source : services_.accessories.sources()) {
        if (place.uri.empty() || !platform::isSamePlace(source->uri(), place.uri)) continue;
        const ui::TesterWords words = ui::testerWords(*source);
        QString state = words.problem.isEmpty() ? words.state : words.problem;
        if (!words.advice.isEmpty()) state = tr("%1. %2").arg(state, words.advice);
        return tr("Chosen: %1").arg(state);
    }
    return place.state;
}

// Many may change at once, again and again.
void TesterViewController::showRowsSoon() {
    if (std::exchange(rowsAreDue_, true)) return;
    rowsSoon_ = services_.scheduler.callAfter(kRowsDelay, [this] {
        rowsAreDue_ = false;
        showRows();
    });
}

void TesterViewController::showRows() {
    std::vector<TesterPlace> places = all_.places();
    const bool same = std::equal(places.begin(), places.end(), places_.begin(), places_.end(),
                                 [](const TesterPlace& a, const TesterPlace& b) { return a.uri == b.uri; });
    places_ = std::move(places);
    std::vector<ui::TableRow> made;
    for (const TesterPlace& each : places_) {
        const QString state = stateOf(each);
        double height = kLeastRowHeight;
        for (const auto& [text, column] : {std::pair(each.name, 0), std::pair(state, 1)}) {
            const ui::Column& place = rows.columns()[column];
            height = std::max(height, kRowPadding + services_.textMeasure.wrappedHeight(
                                                        text, QStringLiteral("helvetica"), place.fontSize,
                                                        place.width, kMostRowHeight));
        }
        made.push_back({.texts = {each.name, state}, .height = height, .mark = {}, .group = each.group});
    }
    if (!same) return rows.setRows(std::move(made));
    for (int row = 0; row < rows.count(); ++row) {
        if (rows.at(row).texts != made[static_cast<std::size_t>(row)].texts)
            rows.setRow(row, std::move(made[static_cast<std::size_t>(row)]));
    }
}

}  // namespace kestrix::shell
