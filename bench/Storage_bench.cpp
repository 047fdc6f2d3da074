// The database on the disk that holds this program: a durable insert beside bare ones in the same run, and
// finding a record's measurements among a million.

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "storage/ServiceDao.h"
#include "storage/Statements.h"

namespace {

using kestrix::platform::DocumentsFolder;
using kestrix::storage::MeasureData;
using kestrix::storage::ServiceDao;
using Seconds = std::chrono::duration<double>;

constexpr int kMeasures = 1'000'000;
constexpr int kRecords = 50'000;  // of 20 measurements each
constexpr int kUnsaved = 20;

// Not in /tmp, which may be no disk.
QString folderOfThisProgram() {
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
}

class Folder {
  public:
    DocumentsFolder documents() const { return DocumentsFolder(folder_.path()); }
    std::string file() const { return folder_.filePath(QStringLiteral("kestrix.sqlite")).toStdString(); }

  private:
    QTemporaryDir folder_{folderOfThisProgram() + QStringLiteral("/storage_bench_XXXXXX")};
};

struct Close {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};
using Connection = std::unique_ptr<sqlite3, Close>;

void run(const Connection& connection, const char* sql) {
    if (sqlite3_exec(connection.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK) return;
    std::fprintf(stderr, "storage_bench: %s: %s\n", sql, sqlite3_errmsg(connection.get()));
    std::exit(1);
}

Connection connected(const Folder& folder) {
    sqlite3* opened = nullptr;
    sqlite3_open(folder.file().c_str(), &opened);
    return Connection(opened);
}

MeasureData measurement() {
    MeasureData measure;
    measure.dataName = "S_1";
    measure.function = "Insulation";
    measure.parameters = "500V";
    measure.result = "299.9MΩ";
    measure.dateTime = "2024-06-03 09:08:07";
    measure.comments = " ";
    return measure;
}

constexpr const char* kBareInsert =
    "INSERT INTO measurefrom (recordId, dataName, function, parameters, result, dateTime, comments, "
    "recordName) "
    "VALUES (0, 'S_1', 'Insulation', '500V', '299.9MΩ', '2024-06-03 09:08:07', ' ', '')";

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// A way to insert one row, in a database of its own.
struct Way {
    Folder folder;
    std::function<void()> insert;
    std::vector<double> times;
};

// Each round inserts one row in every way, in an order by chance: what one leaves the disk to do, the next
// one waits for. The time shown is ours; the counters are medians, in microseconds.
void BM_durableInsert(benchmark::State& state) {
    std::array<Way, 5> ways;
    auto& [ours, pressed, bare, emptied, plain] = ways;
    for (Way& way : ways) ServiceDao(way.folder.documents()).createTable();

    ServiceDao dao(ours.folder.documents());
    ours.insert = [&dao, measure = measurement()] { dao.addMeasureForm(measure); };
    // With its evidence, as at a press.
    ServiceDao pressDao(pressed.folder.documents());
    pressed.insert = [&pressDao, measure = measurement()] {
        pressDao.addMeasureWithEvidence(measure, {.frame = std::string(36, 'f'), .source = "bluetooth"});
    };
    std::array<Connection, 3> connections;
    const auto insertsBare = [&connections](Way& way, std::size_t which, const char* setup) {
        Connection& connection = connections[which] = connected(way.folder);
        run(connection, setup);
        way.insert = [&connection] { run(connection, kBareInsert); };
    };
    // The same table, indexes and journal.
    insertsBare(bare, 0, kestrix::storage::kDurable);
    // The other journal that keeps what it said: emptied each time, it grows anew.
    insertsBare(emptied, 1, "PRAGMA journal_mode = TRUNCATE");
    // What the engine does on its own: no index, and the journal's removal may come back after a power cut.
    insertsBare(plain, 2,
                "DROP INDEX measurefrom_recordId; DROP INDEX measurefrom_unsaved; PRAGMA synchronous = FULL");

    std::array<std::size_t, ways.size()> order{};
    std::iota(order.begin(), order.end(), 0);
    std::mt19937 random(1);  // NOLINT(cert-msc51-cpp)
    for (auto _ : state) {
        std::shuffle(order.begin(), order.end(), random);
        for (const std::size_t which : order) {
            Way& way = ways[which];
            const auto start = std::chrono::steady_clock::now();
            way.insert();
            way.times.push_back(Seconds(std::chrono::steady_clock::now() - start).count());
        }
        state.SetIterationTime(ours.times.back());
    }
    const auto tell = [&state](const char* name, const Way& way) {
        state.counters[name] = median(way.times) * 1e6;
    };
    tell("ours_us", ours);
    tell("pressed_us", pressed);
    tell("bare_us", bare);
    tell("emptied_us", emptied);
    tell("plain_us", plain);
    state.counters["ours/bare"] = median(ours.times) / median(bare.times);
    state.counters["pressed/bare"] = median(pressed.times) / median(bare.times);
    state.counters["pressed/emptied"] = median(pressed.times) / median(emptied.times);
    state.counters["pressed/plain"] = median(pressed.times) / median(plain.times);
}
BENCHMARK(BM_durableInsert)->UseManualTime()->Unit(benchmark::kMicrosecond);

// A million measurements; those of one record lie as far from each other as they can.
ServiceDao& million(bool indexed) {
    static const std::array<Folder, 2> folders;
    static std::array<std::unique_ptr<ServiceDao>, 2> daos;
    std::unique_ptr<ServiceDao>& dao = daos.at(indexed ? 1 : 0);
    if (dao) return *dao;
    const Folder& folder = folders.at(indexed ? 1 : 0);
    dao = std::make_unique<ServiceDao>(folder.documents());
    dao->createTable();
    if (!indexed) dao->execSql("DROP INDEX measurefrom_recordId; DROP INDEX measurefrom_unsaved");
    dao->execSql(
        "WITH n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " + std::to_string(kMeasures) +
        ") INSERT INTO measurefrom (recordId, dataName, function, parameters, result, dateTime, "
        "comments, recordName) SELECT i % " +
        std::to_string(kRecords) +
        " + 1, 'S_' || i, 'Insulation', '500V', '299.9MΩ', '2024-06-03 09:08:07', ' ', 'House' FROM n");
    for (int i = 0; i < kUnsaved; ++i) dao->addMeasureForm(measurement());
    return *dao;
}

void expectRows(benchmark::State& state, std::size_t found, std::size_t expected) {
    if (found != expected) state.SkipWithError("wrong number of measurements found");
}

// The time to find the 20 measurements of one record. indexed 0: for comparison.
void BM_findMeasureofId(benchmark::State& state) {
    ServiceDao& dao = million(state.range(0) != 0);
    std::int64_t record = 7;
    for (auto _ : state) {
        record = record % kRecords + 1;
        expectRows(state, dao.findMeasureofId(record).size(), 20);
        record += 7919;
    }
}
BENCHMARK(BM_findMeasureofId)->ArgName("indexed")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

// The time to find the 20 that are not saved yet.
void BM_findUnsavedOfAMillion(benchmark::State& state) {
    ServiceDao& dao = million(state.range(0) != 0);
    for (auto _ : state) expectRows(state, dao.findMeasureForm(false).size(), kUnsaved);
}
BENCHMARK(BM_findUnsavedOfAMillion)->ArgName("indexed")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
