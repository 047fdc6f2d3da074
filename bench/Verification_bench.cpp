// Verifying measurements, beside reading both tables and doing nothing with them.

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "apps/kestrix-cli/Verification.h"
#include "display/Steps.h"
#include "live/MeasurementEvidence.h"
#include "protocol/KV3820protocal.h"
#include "storage/EvidenceChain.h"
#include "storage/EvidenceHash.h"
#include "storage/PreparedStatement.h"
#include "storage/ServiceDao.h"
#include "tests/support/FrameBuilder.h"

namespace {

using namespace kestrix;

constexpr int kOfARecord = 20;

storage::MeasureData measurement(const display::Display& display, int number) {
    storage::MeasureData measure;
    measure.dataName = "S_" + std::to_string(number);
    measure.function = display.strfunction.value_or("");
    measure.parameters = display.parameters;
    measure.result = display.results;
    measure.dateTime = "2024-06-03 09:08:07";
    measure.comments = " ";
    return measure;
}

storage::EvidenceRow rowOf(storage::EvidenceEvent event, int dataId, const storage::MeasureData& measure) {
    storage::EvidenceRow row;
    row.event = event;
    row.dataId = dataId;
    row.measurement = storage::digestOf(measure);
    row.program = "kestrix";
    return row;
}

// A database of so many measurements with their evidence; filed: in test records as well.
class Written {
  public:
    // On the disk that holds this program.
    Written(bool filed, int measures)
        : folder_(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath() +
                  QStringLiteral("/verification_bench_XXXXXX")) {
        storage::ServiceDao(platform::DocumentsFolder(folder_.path())).createTable();
        sqlite3_open(path().c_str(), &file_);
        run("PRAGMA synchronous = OFF; BEGIN");
        {
            storage::EvidenceChain chain(file_);
            for (int first = 1; first <= measures; first += kOfARecord) add(chain, first, filed);
        }
        run("COMMIT");
        sqlite3_close(file_);
    }
    std::string path() const { return folder_.filePath(QStringLiteral("kestrix.sqlite")).toStdString(); }

  private:
    void run(const std::string& sql) { sqlite3_exec(file_, sql.c_str(), nullptr, nullptr, nullptr); }
    void add(storage::EvidenceChain& chain, int first, bool filed) {
        std::vector<storage::MeasureData> measures;
        for (int i = first; i < first + kOfARecord; ++i) {
            protocol::KV3820protocal decoder;
            decoder.initFromNSdata(testing::FrameBuilder(static_cast<char>('1' + i % 6))
                                       .reading(1, static_cast<std::uint16_t>(i), 0)
                                       .bytes());
            display::recordCame(display_, decoder.return3820data());
            storage::MeasureData measure = measurement(display_, i);
            storage::EvidenceRow row = rowOf(storage::EvidenceEvent::Recorded, i, measure);
            row.identity = "019cb6f3-9e93-7a5b-8c1d-2e3f40516273";
            row.evidence = source_.evidenceOf(display_.measured, false);
            chain.append(row);
            if (filed) {
                measure.recordId = first / kOfARecord + 1;
                measure.recordName = "House";
            }
            insert(i, measure);
            measures.push_back(std::move(measure));
        }
        if (!filed) return;
        run("INSERT INTO recordfrom (projectname, samples) VALUES ('House', " + std::to_string(kOfARecord) +
            ")");
        int dataId = first;
        for (const storage::MeasureData& measure : measures) {
            storage::EvidenceRow row = rowOf(storage::EvidenceEvent::Filed, dataId++, measure);
            chain.append(row);
        }
    }
    void insert(int number, const storage::MeasureData& measure) {
        const storage::Prepared statement =
            storage::prepare(file_, "INSERT INTO measurefrom VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
        sqlite3_bind_int(statement.get(), 1, number);
        sqlite3_bind_int64(statement.get(), 2, measure.recordId);
        int column = 2;
        for (const std::string* text :
             {&measure.dataName, &measure.function, &measure.parameters, &measure.result, &measure.dateTime,
              &measure.comments, &measure.recordName})
            sqlite3_bind_text(statement.get(), ++column, text->c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_step(statement.get());
    }

    QTemporaryDir folder_;
    sqlite3* file_ = nullptr;
    display::Display display_;
    live::ReadingSource source_;
};

std::string database(const benchmark::State& state) {
    static std::map<std::pair<std::int64_t, std::int64_t>, Written> written;
    const auto key = std::pair(state.range(0), state.range(1));
    return written.try_emplace(key, key.first != 0, static_cast<int>(key.second)).first->second.path();
}

// filed, measures. The smaller ones are for a quick pass.
void sizes(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"filed", "measures"})->Unit(benchmark::kSecond)->Iterations(1);
    for (const int measures : {50'000, 1'000'000}) bench->Args({0, measures})->Args({1, measures});
}

void BM_verify(benchmark::State& state) {
    const std::string path = database(state);
    for (auto _ : state) {
        const cli::Verification result = cli::verifyDatabase(path);
        if (!result.isClean() || std::cmp_not_equal(result.derived, state.range(1)))
            state.SkipWithError("not as it was stored");
    }
}
BENCHMARK(BM_verify)->Apply(sizes);

// The baseline.
void BM_readBothTables(benchmark::State& state) {
    const std::string path = database(state);
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
BENCHMARK(BM_readBothTables)->Apply(sizes);

}  // namespace

BENCHMARK_MAIN();
