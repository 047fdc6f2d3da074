// The PDF of a test record beside a bare QPdfWriter that draws the same texts and rules, in the same run and
// into memory.

#include <benchmark/benchmark.h>
#include <QBuffer>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "history/ExportLines.h"
#include "history/PdfReport.h"
#include "history/ReportLayout.h"

namespace {

using namespace kestrix;

constexpr int kDots = 10;

storage::MeasureData measurement(int number) {
    storage::MeasureData measure;
    measure.dataId = number;
    measure.dataName = "S_" + std::to_string(number);
    measure.function = "INSULATION";
    measure.parameters = "VISO=500V,LIMIT=1.0MΩ";
    measure.result = "199.9MΩ,528V";
    measure.dateTime = "2026-03-04 05:06:07";
    return measure;
}

struct BareText {
    QPointF place;  // of its base line
    int size;
    QString text;
};

// The page with nothing left to do but to draw it.
struct BarePage {
    history::ReportPage page;
    std::vector<BareText> texts;
};

BarePage barePage(const std::vector<storage::MeasureData>& all) {
    history::ReportLines lines;
    lines.measureTitle = history::MeasureTitle;
    for (const storage::MeasureData& measure : all)
        history::appendMeasureLine(lines.rows.emplace_back(), measure);
    BarePage bare{history::layOutReport(lines), {}};
    for (const history::ReportText& text : bare.page.texts)
        bare.texts.push_back({{text.x * kDots, (text.y + 0.905 * text.size) * kDots},
                              text.size,
                              QString::fromStdString(text.text)});
    return bare;
}

QByteArray drawBarely(const BarePage& bare) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(72 * kDots);
    writer.setPageSize(QPageSize(QSizeF(bare.page.width, bare.page.height), QPageSize::Point,
                                 QStringLiteral("bare"), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    painter.setPen(QPen(Qt::black, kDots));
    painter.drawRect(QRectF(200, 200, 5720, (bare.page.height - 40) * kDots));
    for (const double y : bare.page.rules)
        painter.drawLine(QPointF(200, y * kDots), QPointF(5920, y * kDots));
    QFont small(QStringLiteral("Liberation Sans"));
    small.setPixelSize(7 * kDots);
    QFont large = small;
    large.setPixelSize(9 * kDots);
    for (const BareText& text : bare.texts) {
        painter.setFont(text.size == 7 ? small : large);
        painter.drawText(text.place, text.text);
    }
    painter.end();
    return buffer.data();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Of the processor: nothing here waits for anything, and other programs do not count.
double secondsOf(const std::function<void()>& action) {
    const std::clock_t start = std::clock();
    action();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// By turns. The time shown is ours; the counters are medians.
void BM_report(benchmark::State& state) {
    std::vector<storage::MeasureData> all;
    for (int i = 1; i <= state.range(0); ++i) all.push_back(measurement(i));
    const history::ExportedRecord record{std::nullopt, history::measurementsIn(all), "20260304050607"};
    const BarePage bare = barePage(all);
    std::size_t bytes = 0;
    const auto draw = [&] {
        std::string pdf;
        const storage::Outcome outcome = history::writePdf(record, [&pdf](std::string_view piece) {
            pdf += piece;
            return storage::Outcome{};
        });
        if (!outcome.done || pdf.empty()) std::exit(1);
        bytes = pdf.size();
    };
    draw();  // fonts are looked up
    drawBarely(bare);
    std::vector<double> ours;
    std::vector<double> theirs;
    bool oursFirst = true;
    for (auto _ : state) {
        if (oursFirst) ours.push_back(secondsOf(draw));
        theirs.push_back(secondsOf([&bare] { benchmark::DoNotOptimize(drawBarely(bare)); }));
        if (!oursFirst) ours.push_back(secondsOf(draw));
        oursFirst = !oursFirst;
        state.SetIterationTime(ours.back());
    }
    state.counters["ours_ms"] = median(ours) * 1e3;
    state.counters["bare_ms"] = median(theirs) * 1e3;
    state.counters["ours/bare"] = median(ours) / median(theirs);
    state.counters["kB"] = static_cast<double>(bytes) / 1e3;
}
BENCHMARK(BM_report)->ArgName("rows")->Arg(20)->Arg(100)->Arg(1000)->Arg(10000)->UseManualTime()->Unit(
    benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
