#include "storage/ServiceDao.h"

#include <sqlite3.h>
#include <QDir>

#include "storage/Rows.h"
#include "storage/StatementText.h"
#include "storage/Statements.h"
#include "storage/StorageLog.h"

namespace kestrix::storage {

Q_LOGGING_CATEGORY(lcStorage, "kestrix.storage")

namespace {

constexpr int kBusyMilliseconds = 5000;

struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

// Null when there is no connection, or the text is none or cannot be prepared.
Statement prepared(sqlite3* connection, const StatementText& text) {
    sqlite3_stmt* statement = nullptr;
    if (connection != nullptr && text) sqlite3_prepare_v2(connection, text.get(), -1, &statement, nullptr);
    return Statement(statement);
}

bool hasRow(const Statement& statement) {
    return statement && sqlite3_step(statement.get()) == SQLITE_ROW;
}

}  // namespace

void ServiceDao::Close::operator()(sqlite3* connection) const {
    sqlite3_close(connection);
}

ServiceDao::ServiceDao(const platform::DocumentsFolder& folder)
    : path_(QDir(folder.path()).absoluteFilePath(QStringLiteral("kestrix.sqlite")).toStdString()) {
    createDatadase();
}

ServiceDao::ServiceDao(ServiceDao&&) noexcept = default;
ServiceDao& ServiceDao::operator=(ServiceDao&&) noexcept = default;
ServiceDao::~ServiceDao() = default;

void ServiceDao::createDatadase() {
    sqlite3* opened = nullptr;
    const int status = sqlite3_open(path_.c_str(), &opened);
    db_.reset(opened);
    if (status != SQLITE_OK) {
        db_.reset();
        qCWarning(lcStorage, "数据库创建失败");
        return;
    }
    sqlite3_busy_timeout(opened, kBusyMilliseconds);
}

sqlite3* ServiceDao::connection() {
    int moved = 0;
    if (db_) sqlite3_file_control(db_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    if (!db_ || moved != 0) createDatadase();
    return db_.get();
}

bool ServiceDao::run(const char* sql) {
    sqlite3* const open = connection();
    if (open != nullptr && sql != nullptr &&
        sqlite3_exec(open, kDurable, nullptr, nullptr, nullptr) == SQLITE_OK &&
        sqlite3_exec(open, sql, nullptr, nullptr, nullptr) == SQLITE_OK)
        return true;
    db_.reset();
    qCWarning(lcStorage, "数据操作失败");
    return false;
}

void ServiceDao::runDelete(std::string_view text, std::int64_t id) {
    sqlite3* const open = connection();
    if (open == nullptr || sqlite3_exec(open, kDurable, nullptr, nullptr, nullptr) != SQLITE_OK) return;
    const Statement statement = prepared(open, statementText(text, {id}));
    while (hasRow(statement)) {
    }
}

template <class Row, class... Values>
std::vector<Row> ServiceDao::rows(std::string_view text, const Values&... values) {
    std::vector<Row> found;
    const Statement statement = prepared(connection(), statementText(text, {values...}));
    while (hasRow(statement)) readRow(statement.get(), found.emplace_back());
    return found;
}

void ServiceDao::execSql(const std::string& sql) {
    run(sql.c_str());
}

void ServiceDao::createTable() {
    const bool measures = run(kCreateMeasure);
    const bool records = run(kCreateRecord);
    if (measures && records) run(kCreateIndex);
}

bool ServiceDao::hasTables() {
    sqlite3* const open = connection();
    return prepared(open, statementText(kAllMeasures, {})) && prepared(open, statementText(kAllRecords, {}));
}

void ServiceDao::addMeasureForm(const MeasureData& measure) {
    run(statementText(kAddMeasure, {"measurefrom", "recordId", "dataName", "function", "parameters", "result",
                                    "dateTime", "comments", "recordName", measure.recordId, measure.dataName,
                                    measure.function, measure.parameters, measure.result, measure.dateTime,
                                    measure.comments, measure.recordName})
            .get());
}

void ServiceDao::addRecordForm(const RecordData& record) {
    run(statementText(kAddRecord, {"recordfrom", "company", "operators", "addres", "startTime", "endTime",
                                   "dates", "samples", "serial", "projectname", record.company,
                                   record.operators, record.addres, record.startTime, record.endTime,
                                   record.dates, record.samples, record.serial, record.projectName})
            .get());
}

void ServiceDao::updateMeasureForm(const std::string& recordName, std::int64_t recordId,
                                   std::int64_t dataId) {
    run(statementText(kUpdateMeasure, {recordName, recordId, dataId}).get());
}

std::vector<RecordData> ServiceDao::findRecordForm() {
    return rows<RecordData>(kAllRecords);
}

int ServiceDao::findRecordFormCount() {
    const Statement statement = prepared(connection(), statementText(kAllRecords, {}));
    int count = 0;
    while (hasRow(statement)) ++count;
    return count;
}

std::vector<MeasureData> ServiceDao::findMeasureForm(bool all) {
    return all ? rows<MeasureData>(kAllMeasures) : rows<MeasureData>(kMeasuresByName, std::string_view());
}

std::vector<MeasureData> ServiceDao::findMeasureofId(std::int64_t recordId) {
    return rows<MeasureData>(kMeasuresOfRecord, recordId);
}

std::vector<MeasureData> ServiceDao::findMeasureofDataId(std::int64_t dataId) {
    return rows<MeasureData>(kMeasureOfId, dataId);
}

std::vector<RecordData> ServiceDao::findRecordofId(std::int64_t recordId) {
    return rows<RecordData>(kRecordOfId, recordId);
}

void ServiceDao::DeleteMeasureFormData(std::int64_t dataId) {
    runDelete(kDeleteMeasure, dataId);
}

void ServiceDao::DeleteRecordFormData(std::int64_t recordId) {
    runDelete(kDeleteRecord, recordId);
}

}  // namespace kestrix::storage
