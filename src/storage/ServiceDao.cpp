#include "storage/ServiceDao.h"

#include <sqlite3.h>
#include <QCoreApplication>
#include <QDir>

#include <utility>

#include "platform/PrivateFiles.h"
#include "storage/DatabaseLook.h"
#include "storage/EvidenceHash.h"
#include "storage/MeasurementIdentity.h"
#include "storage/Rows.h"
#include "storage/StatementText.h"
#include "storage/Statements.h"
#include "storage/StorageLog.h"
#include "storage/Transaction.h"

namespace kestrix::storage {

Q_LOGGING_CATEGORY(lcStorage, "kestrix.storage", QtWarningMsg)

namespace {

constexpr const char* kTooLong = QT_TRANSLATE_NOOP("Outcome", "a text is too long");
constexpr const char* kNoSuchRow = QT_TRANSLATE_NOOP("Outcome", "the measurement is no longer there");
constexpr const char* kMoved = QT_TRANSLATE_NOOP("Outcome", "the database was moved away meanwhile");

}  // namespace

void ServiceDao::Close::operator()(sqlite3* connection) const {
    sqlite3_close_v2(connection);  // a row that is being read is read to its end
}

ServiceDao::ServiceDao(const platform::DocumentsFolder& folder, std::chrono::milliseconds patience)
    : folder_(folder),
      path_(QDir(folder.path()).absoluteFilePath(QLatin1String(kDatabaseFile)).toStdString()),
      patience_(patience) {
    createDatadase();
}

ServiceDao::ServiceDao(ServiceDao&&) noexcept = default;
ServiceDao& ServiceDao::operator=(ServiceDao&&) noexcept = default;
ServiceDao::~ServiceDao() = default;

void ServiceDao::setPatience(std::chrono::milliseconds patience) {
    patience_ = patience;
    if (db_) sqlite3_busy_timeout(db_.get(), static_cast<int>(patience_.count()));
}

void ServiceDao::closeConnection() {
    chain_.reset();
    search_.reset();
    db_.reset();
}

void ServiceDao::createDatadase() {
    closeConnection();
    if (std::string why = folder_.whyKeptOut(); !why.empty()) {
        outcome_ = {false, std::move(why), 0};
        qCWarning(lcStorage, "数据库创建失败");
        return;
    }
    const QString path = QString::fromStdString(path_);
    platform::makePrivateFile(path);
    sqlite3* opened = nullptr;
    const int status = sqlite3_open(path_.c_str(), &opened);
    db_.reset(opened);
    outcome_ = status == SQLITE_OK ? Outcome{} : failureOf(opened, path_);
    if (status != SQLITE_OK) {
        db_.reset();
        qCWarning(lcStorage, "数据库创建失败");
        return;
    }
    // The engine gives the journal the rights of the database.
    if (mayBeOurs(opened)) {
        platform::keepPrivate(path);
        platform::keepPrivate(path + QStringLiteral("-journal"));
    }
    setPatience(patience_);
}

sqlite3* ServiceDao::connection() {
    if (inTransaction_) return connectionOfTransaction();
    if (!isInPlace()) createDatadase();
    return db_.get();
}

// Whether there is a connection, and its file is still where it was opened.
bool ServiceDao::isInPlace() {
    int moved = 0;
    if (db_) sqlite3_file_control(db_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return db_ != nullptr && moved == 0;
}

// After a failure the engine may have undone all of it on its own, and whatever followed would count by
// itself.
sqlite3* ServiceDao::connectionOfTransaction() {
    if (!outcome_.done) return nullptr;
    if (isInPlace() && sqlite3_get_autocommit(db_.get()) == 0) return db_.get();
    outcome_ = failure(kMoved);
    return nullptr;
}

bool ServiceDao::execute(const char* sql, const char* setup) {
    sqlite3* const open = connection();
    if (open == nullptr) return false;
    if (sql == nullptr) {
        outcome_ = failure(kTooLong);
        return false;
    }
    const auto carriesOut = [open](const char* statement) {
        return sqlite3_exec(open, statement, nullptr, nullptr, nullptr) == SQLITE_OK;
    };
    // A transaction that has begun goes on as it began. Another program may have set the file up otherwise
    // since the last one.
    const bool done = (inTransaction_ || carriesOut(kDurable)) && (setup == nullptr || carriesOut(setup)) &&
                      carriesOut(sql);
    outcome_ = done ? Outcome{} : failureOf(open, path_);
    return done;
}

bool ServiceDao::run(const char* sql) {
    if (execute(sql)) return true;
    closeConnection();
    qCWarning(lcStorage, "数据操作失败");
    return false;
}

void ServiceDao::runInsert(const char* sql) {
    if (run(sql)) outcome_.identity = sqlite3_last_insert_rowid(db_.get());
}

void ServiceDao::runDelete(std::string_view text, std::int64_t id) {
    execute(statementText(text, {id}).get(), kForgetful);
}

template <class Read>
void ServiceDao::query(const StatementText& text, const Read& read) {
    sqlite3* const open = connection();
    if (open == nullptr) return;
    const Prepared statement = prepare(open, text.get());
    int status = statement ? SQLITE_ROW : SQLITE_ERROR;
    bool wanted = true;
    while (statement && wanted && (status = sqlite3_step(statement.get())) == SQLITE_ROW)
        wanted = read(statement.get());
    outcome_ = status == SQLITE_DONE || !wanted ? Outcome{} : failureOf(open, path_);
}

template <class Row, class... Values>
std::vector<Row> ServiceDao::rows(std::string_view text, const Values&... values) {
    std::vector<Row> found;
    query(statementText(text, {values...}), [&found](sqlite3_stmt* statement) {
        readRow(statement, found.emplace_back());
        return true;
    });
    return found;
}

void ServiceDao::execSql(const std::string& sql) {
    run(sql.c_str());
}

void ServiceDao::createTable() {
    const bool measures = run(kCreateMeasure);
    const Outcome first = outcome_;
    if (run(kCreateRecord) && measures) createIndexes();
    if (!measures) outcome_ = first;
}

void ServiceDao::createIndexes() {
    for (const char* const statement : kCreateIndexes) {
        if (!execute(statement)) return;
    }
}

bool ServiceDao::hasTables() {
    sqlite3* const open = connection();
    if (open == nullptr) return false;
    const bool has = prepare(open, statementText(kAllMeasures, {}).get()) &&
                     prepare(open, statementText(kAllRecords, {}).get());
    outcome_ = has ? Outcome{} : failureOf(open, path_);
    return has;
}

void ServiceDao::addMeasureForm(const MeasureData& measure) {
    runInsert(
        statementText(kAddMeasure, {"measurefrom", "recordId", "dataName", "function", "parameters", "result",
                                    "dateTime", "comments", "recordName", measure.recordId, measure.dataName,
                                    measure.function, measure.parameters, measure.result, measure.dateTime,
                                    measure.comments, measure.recordName})
            .get());
}

void ServiceDao::addMeasureWithEvidence(const MeasureData& measure, const Evidence& evidence) {
    std::optional<Transaction> own;
    if (!inTransaction_) own.emplace(*this);
    if (!outcome_.done) return;
    addMeasureForm(measure);
    if (!outcome_.done) return;
    const std::int64_t identity = outcome_.identity;
    EvidenceRow row;
    row.dataId = identity;
    row.evidence = evidence;
    row.moment = moment_;
    row.identity = newMeasurementIdentity(row.moment.utc);
    append(std::move(row), measure);
    if (own && !own->commit()) return;
    if (outcome_.done) outcome_.identity = identity;
}

void ServiceDao::noteEvidence(EvidenceEvent event, const MeasureData& measure) {
    EvidenceRow row;
    row.event = event;
    row.dataId = measure.dataId;
    row.moment = moment_;
    append(std::move(row), measure);
}

void ServiceDao::append(EvidenceRow row, MeasureData measure) {
    sqlite3* const open = connection();
    if (open == nullptr) return;
    measure.recordId = static_cast<std::int32_t>(measure.recordId);  // what a statement holds of it
    row.measurement = digestOf(measure);
    row.program = programName();
    if (!chain_) chain_.emplace(open);
    if (chain_->append(row)) {
        outcome_ = {};
        return;
    }
    outcome_ = failureOf(open, path_);
    closeConnection();
    qCWarning(lcStorage, "数据操作失败");
}

std::optional<EvidenceRow> ServiceDao::findRecorded(std::int64_t dataId) {
    std::optional<EvidenceRow> found;
    sqlite3* const open = connection();
    if (open == nullptr) return found;
    if (!search_) search_.emplace(open);
    outcome_ = search_->find(dataId, found) ? Outcome{} : failureOf(open, path_);
    return found;
}

ChainHead ServiceDao::findChainHead() {
    ChainHead head;
    sqlite3* const open = connection();
    if (open != nullptr) outcome_ = readHead(open, head) ? Outcome{} : failureOf(open, path_);
    return head;
}

void ServiceDao::addRecordForm(const RecordData& record) {
    runInsert(statementText(
                  kAddRecord,
                  {"recordfrom", "company", "operators", "addres", "startTime", "endTime", "dates", "samples",
                   "serial", "projectname", record.company, record.operators, record.addres, record.startTime,
                   record.endTime, record.dates, record.samples, record.serial, record.projectName})
                  .get());
}

void ServiceDao::updateMeasureForm(const std::string& recordName, std::int64_t recordId,
                                   std::int64_t dataId) {
    if (run(statementText(kUpdateMeasure, {recordName, recordId, dataId}).get()) &&
        sqlite3_changes(db_.get()) == 0)
        outcome_ = failure(kNoSuchRow);
}

void ServiceDao::updateRecordForm(const RecordData& record) {
    if (run(statementText(kUpdateRecord,
                          {record.startTime, record.endTime, record.dates, record.samples, record.recordId})
                .get()) &&
        sqlite3_changes(db_.get()) == 0)
        outcome_ = recordIsGone();
}

void ServiceDao::restoreMeasureForm(const MeasureData& measure) {
    runInsert(statementText(kRestoreMeasure, {measure.dataId, measure.recordId, measure.dataName,
                                              measure.function, measure.parameters, measure.result,
                                              measure.dateTime, measure.comments, measure.recordName})
                  .get());
}

void ServiceDao::restoreRecordForm(const RecordData& record) {
    runInsert(statementText(kRestoreRecord, {record.recordId, record.company, record.operators, record.addres,
                                             record.startTime, record.endTime, record.dates, record.samples,
                                             record.serial, record.projectName})
                  .get());
}

std::vector<RecordData> ServiceDao::findRecordForm() {
    return rows<RecordData>(kAllRecords);
}

int ServiceDao::findRecordFormCount() {
    int count = 0;
    query(statementText(kAllRecords, {}), [&count](sqlite3_stmt*) { return ++count > 0; });
    return count;
}

std::vector<MeasureData> ServiceDao::findMeasureForm(bool all) {
    return all ? rows<MeasureData>(kAllMeasures) : rows<MeasureData>(kMeasuresByName, std::string_view());
}

std::vector<MeasureData> ServiceDao::findMeasureofId(std::int64_t recordId) {
    return rows<MeasureData>(kMeasuresOfRecord, recordId);
}

void ServiceDao::eachMeasureofId(std::int64_t recordId,
                                 const std::function<bool(const MeasureData&)>& visit) {
    MeasureData measure;
    query(statementText(kMeasuresOfRecord, {recordId}), [&](sqlite3_stmt* statement) {
        readRow(statement, measure);
        return visit(measure);
    });
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
