#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/DocumentsFolder.h"
#include "storage/Evidence.h"
#include "storage/EvidenceChain.h"
#include "storage/EvidenceSearch.h"
#include "storage/MeasureData.h"
#include "storage/Moments.h"
#include "storage/Outcome.h"
#include "storage/RecordData.h"
#include "storage/StatementText.h"

struct sqlite3;

namespace kestrix::storage {

// In the documents folder.
inline constexpr const char* kDatabaseFile = "kestrix.sqlite";

// The one way to the measurements: "kestrix.sqlite" in the documents folder, over a connection of its own.
// Many may be open on one file; none holds a transaction between calls, unless a Transaction lives.
// docs/database.md has tables and durability.
//
// Nothing throws, and the operations themselves answer nothing on failure; who must know asks lastOutcome().
//   the file cannot be opened                "数据库创建失败" in the log
//   an INSERT, UPDATE or CREATE fails        "数据操作失败" in the log; the connection is closed
//   a SELECT fails                           the rows read so far: mostly none
//   a DELETE fails                           nothing
// Every operation opens the connection again when it is closed, or when the file was moved away under it. A
// lock of another connection is waited for, as long as the patience says, each time.
//
// Ids reach the database as 32-bit signed decimals: of a wider one the low 32 bits. Texts are stored byte by
// byte, whatever they hold.
class ServiceDao {
  public:
    static constexpr std::chrono::milliseconds kPatience{5000};

    // Opens the file and makes it when it is missing, but neither the folder nor the tables. File and journal
    // are their owner's alone from then on, unless the file is no database or has another program's number. A
    // folder whose guard keeps it out cannot be opened, for that reason.
    explicit ServiceDao(const platform::DocumentsFolder& folder,
                        std::chrono::milliseconds patience = kPatience);
    ServiceDao(ServiceDao&&) noexcept;
    ServiceDao& operator=(ServiceDao&&) noexcept;
    ~ServiceDao();

    // From now on.
    void setPatience(std::chrono::milliseconds patience);

    // Opens the connection, anew when there is one.
    void createDatadase();
    // Makes the tables and the indexes that are not there.
    void createTable();
    // Makes the indexes that are not there, for a file of before. Says nothing in the log when it cannot:
    // they only make finding quick.
    void createIndexes();
    // Whether both tables can be read.
    bool hasTables();

    // The row is on the disk when these return; the database numbers it.
    void addMeasureForm(const MeasureData& measure);
    void addRecordForm(const RecordData& record);

    // The same with the measurement's evidence, both or neither: a transaction of its own, or part of the one
    // that is open.
    void addMeasureWithEvidence(const MeasureData& measure, const Evidence& evidence);
    // Appends to the evidence what is done with a measurement, in the transaction that is open. measure: its
    // row as it is behind that; of one that is deleted, as it was.
    void noteEvidence(EvidenceEvent event, const MeasureData& measure);
    // How a measurement was recorded; none: it has no evidence.
    std::optional<EvidenceRow> findRecorded(std::int64_t dataId);
    ChainHead findChainHead();
    // Whose moments the evidence tells; without it, the machine's clocks.
    void setClock(std::function<Moment()> clock) { clock_ = std::move(clock); }

    // By ascending identity.
    std::vector<RecordData> findRecordForm();
    int findRecordFormCount();
    // all: every measurement; otherwise those that belong to no record yet (an empty recordName).
    std::vector<MeasureData> findMeasureForm(bool all);
    std::vector<MeasureData> findMeasureofId(std::int64_t recordId);
    // The same rows, one by one and without keeping them, until the visitor answers false. What it is handed
    // is its own only until it returns. Until the walk ends nobody can write to the database: it must not
    // wait.
    void eachMeasureofId(std::int64_t recordId, const std::function<bool(const MeasureData&)>& visit);
    // None or one.
    std::vector<MeasureData> findMeasureofDataId(std::int64_t dataId);
    std::vector<RecordData> findRecordofId(std::int64_t recordId);

    // Files the measurement dataId under a record.
    void updateMeasureForm(const std::string& recordName, std::int64_t recordId, std::int64_t dataId);
    // Writes the record's times and its number of measurements anew.
    void updateRecordForm(const RecordData& record);

    // A record's measurements stay.
    void DeleteMeasureFormData(std::int64_t dataId);
    void DeleteRecordFormData(std::int64_t recordId);

    // Inserts the row under the identity that it has. Fails where there is such a row.
    void restoreMeasureForm(const MeasureData& measure);
    void restoreRecordForm(const RecordData& record);

    void execSql(const std::string& sql);

    // What came of the last operation, told after every one: it is done, or the reason why not. A query is
    // done when it gave every row that there is, or that was wanted; an update when there was such a row.
    const Outcome& lastOutcome() const { return outcome_; }

  private:
    friend class Snapshot;
    friend class Transaction;

    struct Close {
        void operator()(sqlite3* connection) const;
    };

    void closeConnection();
    // Null when the file cannot be opened, and from the first failure of a transaction to its end.
    sqlite3* connection();
    bool isInPlace();
    // The same while a transaction is open: another connection would not be part of it.
    sqlite3* connectionOfTransaction();
    // Carries the statement out and tells the outcome. sql: null when it could not be composed. setup: of the
    // connection, for this transaction.
    bool execute(const char* sql, const char* setup = nullptr);
    // The same; a failure is logged and closes the connection.
    bool run(const char* sql);
    void runInsert(const char* sql);
    void append(EvidenceRow row, MeasureData measure);
    void runDelete(std::string_view text, std::int64_t id);
    // Hands each row that the statement stands on to `read` until that answers false, and tells the outcome.
    template <class Read>
    void query(const StatementText& text, const Read& read);
    template <class Row, class... Values>
    std::vector<Row> rows(std::string_view text, const Values&... values);

    platform::DocumentsFolder folder_;
    std::string path_;
    std::chrono::milliseconds patience_;
    Outcome outcome_;
    bool inTransaction_ = false;
    std::function<Moment()> clock_ = momentNow;
    Moment moment_{};  // when the transaction was asked for
    std::unique_ptr<sqlite3, Close> db_;
    std::optional<EvidenceChain> chain_;  // both of this connection
    std::optional<EvidenceSearch> search_;
};

}  // namespace kestrix::storage
