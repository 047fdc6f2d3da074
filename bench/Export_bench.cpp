// The text file of a test record with 100,000 measurements on the disk that holds this program, beside plain
// ways to write the same bytes in the same run.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "history/Export.h"
#include "history/ExportLines.h"
#include "storage/ServiceDao.h"

namespace {

using namespace kestrix;
using Seconds = std::chrono::duration<double>;

constexpr int kLines = 100'000;
constexpr std::size_t kPiece = 64 * 1024;
constexpr const char* kStamp = "20260304050607";

[[noreturn]] void stop(const char* why) {
    std::fprintf(stderr, "export_bench: %s\n", why);
    std::exit(1);
}

storage::MeasureData measurement(int number) {
    storage::MeasureData measure;
    measure.dataId = number;
    measure.recordId = 1;
    measure.dataName = "S_" + std::to_string(number);
    measure.function = "INSULATION";
    measure.parameters = "VISO=500V,LIMIT=1.0MΩ";
    measure.result = "199.9MΩ,528V";
    measure.dateTime = "2026-03-04 05:06:07";
    measure.comments = " ";
    measure.recordName = "House";
    return measure;
}

std::vector<storage::MeasureData> measurements() {
    std::vector<storage::MeasureData> all;
    for (int i = 1; i <= kLines; ++i) all.push_back(measurement(i));
    return all;
}

void writePlainly(const std::string& path, std::string_view bytes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, kPiece);
        if (::write(file, piece.data(), piece.size()) != static_cast<ssize_t>(piece.size())) stop("write");
        bytes.remove_prefix(piece.size());
    }
    if (::close(file) != 0) stop("close");
}

// As one would write it with Qt: the texts one after the other into a stream.
void writeWithStream(const QString& path, const std::vector<storage::MeasureData>& all) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) stop("open");
    QTextStream stream(&file);
    stream.setEncoding(QStringConverter::Utf16);
    stream.setGenerateByteOrderMark(true);
    const QString separator = QString::fromLatin1(history::kSeparator.data(), history::kSeparator.size());
    stream << QString::fromLatin1(history::MeasureTitle.data(), history::MeasureTitle.size()) << '\n';
    for (const storage::MeasureData& measure : all) {
        stream << measure.dataId;
        for (const std::string* text :
             {&measure.dataName, &measure.function, &measure.parameters, &measure.result, &measure.dateTime})
            stream << separator << QString::fromStdString(*text);
        stream << '\n';
    }
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Way {
    const char* name;
    std::function<void()> write;
    std::vector<double> times;
};

void requireDone(const storage::Outcome& outcome) {
    if (!outcome.done) stop(outcome.reason.c_str());
}

std::string contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) stop("nothing was written");
    return file.readAll().toStdString();
}

// Each round writes every way once, beginning with another each time. The time shown is ours; the counters
// are medians, in milliseconds, and ratios to write(2).
void BM_textExport(benchmark::State& state) {
    const QTemporaryDir temporary(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath() +
                                  QStringLiteral("/export_bench_XXXXXX"));
    const platform::DocumentsFolder folder(temporary.path());
    const std::vector<storage::MeasureData> all = measurements();
    storage::ServiceDao dao(folder);
    dao.createTable();
    dao.execSql("BEGIN");
    for (const storage::MeasureData& measure : all) dao.restoreMeasureForm(measure);
    dao.execSql("COMMIT");
    history::ExportedRecord stored;
    requireDone(history::findExportedRecord(dao, 1, stored));
    stored.timeStamp = "20260304050608";

    const history::ExportedRecord inMemory{std::nullopt, history::measurementsIn(all), kStamp};
    const history::ExportedFile ours = history::exportIntoFolder(inMemory, history::kTextFormat, folder);
    requireDone(ours.outcome);
    const std::string bytes = contentOf(ours.path);
    const QString plain = folder.filePath(QStringLiteral("plain"));
    const QString streamed = folder.filePath(QStringLiteral("streamed"));

    std::array<Way, 4> ways{{
        {"ours",
         [&] { requireDone(history::exportIntoFolder(inMemory, history::kTextFormat, folder).outcome); },
         {}},
        {"write", [&] { writePlainly(plain.toStdString(), bytes); }, {}},
        {"stream", [&] { writeWithStream(streamed, all); }, {}},
        {"fromDatabase",
         [&] { requireDone(history::exportIntoFolder(stored, history::kTextFormat, folder).outcome); },
         {}},
    }};
    std::size_t round = 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < ways.size(); ++i) {
            Way& way = ways[(round + i) % ways.size()];
            const auto start = std::chrono::steady_clock::now();
            way.write();
            way.times.push_back(Seconds(std::chrono::steady_clock::now() - start).count());
        }
        state.SetIterationTime(ways[0].times.back());
        ++round;
    }
    if (contentOf(plain) != bytes || contentOf(streamed) != bytes ||
        contentOf(folder.filePath(QStringLiteral("20260304050608.csv"))) != bytes)
        stop("the ways do not write the same");
    const double baseline = median(ways[1].times);
    for (const Way& way : ways) {
        state.counters[std::string(way.name) + "_ms"] = median(way.times) * 1e3;
        state.counters[std::string(way.name) + "/write"] = median(way.times) / baseline;
    }
    state.counters["MB"] = static_cast<double>(bytes.size()) / 1e6;
}
BENCHMARK(BM_textExport)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
