// Verifying a million measurements, beside reading both tables and doing nothing with them.

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <QFileInfo>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <string>

#include "apps/kestrix-cli/Verification.h"
#include "display/Steps.h"
#include "live/MeasurementEvidence.h"
#include "protocol/KV3820protocal.h"
#include "storage/EvidenceChain.h"
#include "storage/EvidenceHash.h"
#include "storage/ServiceDao.h"
#include "tests/support/FrameBuilder.h"

namespace {

using namespace kestrix;

constexpr int kMeasures = 1'000'000;

// On the disk that holds this program.
const std::string& database() {
    static const QTemporaryDir folder(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath() +
                                      QStringLiteral("/verification_bench_XXXXXX"));
    static std::string path;
    if (!path.empty()) return path;
    path = folder.filePath(QStringLiteral("kestrix.sqlite")).toStdString();
    storage::ServiceDao dao{platform::DocumentsFolder(folder.path())};
    dao.createTable();
    sqlite3* file = nullptr;
    sqlite3_open(path.c_str(), &file);
    sqlite3_exec(file, "PRAGMA synchronous = OFF; BEGIN", nullptr, nullptr, nullptr);
    std::optional<storage::EvidenceChain> chain(file);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(file,
                       "INSERT INTO measurefrom VALUES (?, 0, ?, ?, ?, ?, '2024-06-03 09:08:07', ' ', '')",
                       -1, &insert, nullptr);
    display::Display display;
    const live::ReadingSource source;
    for (int i = 1; i <= kMeasures; ++i) {
        protocol::KV3820protocal decoder;
        decoder.initFromNSdata(testing::FrameBuilder(static_cast<char>('1' + i % 6))
                                   .reading(1, static_cast<std::uint16_t>(i), 0)
                                   .bytes());
        display::recordCame(display, decoder.return3820data());
        storage::MeasureData measure;
        measure.dataName = "S_" + std::to_string(i);
        measure.function = display.strfunction.value_or("");
        measure.parameters = display.parameters;
        measure.result = display.results;
        measure.dateTime = "2024-06-03 09:08:07";
        measure.comments = " ";
        sqlite3_bind_int(insert, 1, i);
        int column = 1;
        for (const std::string* text :
             {&measure.dataName, &measure.function, &measure.parameters, &measure.result})
            sqlite3_bind_text(insert, ++column, text->c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_step(insert);
        sqlite3_reset(insert);
        storage::EvidenceRow row;
        row.dataId = i;
        row.identity = "019cb6f3-9e93-7a5b-8c1d-2e3f40516273";
        row.measurement = storage::digestOf(measure);
        row.evidence = source.evidenceOf(display.measured, false);
        row.program = "kestrix";
        chain->append(row);
    }
    chain.reset();
    sqlite3_finalize(insert);
    sqlite3_exec(file, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(file);
    return path;
}

void BM_verifyAMillion(benchmark::State& state) {
    const std::string& path = database();
    for (auto _ : state) {
        const cli::Verification result = cli::verifyDatabase(path);
        if (!result.isClean() || result.derived != kMeasures) state.SkipWithError("not as it was stored");
    }
}
BENCHMARK(BM_verifyAMillion)->Unit(benchmark::kSecond)->Iterations(1);

// The baseline.
void BM_readBothTables(benchmark::State& state) {
    const std::string& path = database();
    for (auto _ : state) {
        sqlite3* file = nullptr;
        sqlite3_open_v2(path.c_str(), &file, SQLITE_OPEN_READONLY, nullptr);
        for (const char* sql : {"SELECT * FROM measurefrom", "SELECT * FROM evidence"}) {
            sqlite3_stmt* all = nullptr;
            sqlite3_prepare_v2(file, sql, -1, &all, nullptr);
            while (sqlite3_step(all) == SQLITE_ROW) {
                for (int i = sqlite3_column_count(all) - 1; i >= 0; --i)
                    benchmark::DoNotOptimize(sqlite3_column_blob(all, i));
            }
            sqlite3_finalize(all);
        }
        sqlite3_close(file);
    }
}
BENCHMARK(BM_readBothTables)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
