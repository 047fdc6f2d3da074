#include "apps/kestrix-cli/ReportCheck.h"

#include <fmt/core.h>
#include <sqlite3.h>

#include <optional>

#include "apps/kestrix-cli/DatabaseFile.h"
#include "storage/EvidenceHash.h"
#include "storage/EvidenceSearch.h"
#include "storage/RecordDigest.h"
#include "storage/Rows.h"

namespace kestrix::cli {
namespace {

// None: there is no such row. False: it could not be read.
bool readRecord(const DatabaseFile& file, std::int64_t recordId, std::optional<storage::RecordData>& record) {
    const storage::Prepared statement = file.prepare("SELECT * FROM recordfrom WHERE dataId = ?");
    if (!statement) return false;
    sqlite3_bind_int64(statement.get(), 1, recordId);
    const int status = sqlite3_step(statement.get());
    if (status == SQLITE_ROW) storage::readRow(statement.get(), record.emplace());
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

// What each holds, and that it still is what its hash says.
bool addMeasurements(const DatabaseFile& file, std::int64_t recordId, storage::RecordDigest& digest,
                     ReportCheck& check) {
    const storage::Prepared all =
        file.prepare("SELECT * FROM measurefrom WHERE recordId = ? ORDER BY dataId");
    if (!all) return false;
    storage::EvidenceSearch search(file.connection());
    sqlite3_bind_int64(all.get(), 1, recordId);
    storage::MeasureData measure;
    std::optional<storage::EvidenceRow> recorded;
    int status = SQLITE_ROW;
    while ((status = sqlite3_step(all.get())) == SQLITE_ROW) {
        storage::readRow(all.get(), measure);
        if (!search.find(measure.dataId, recorded)) return false;
        digest.add(measure, recorded);
        if (recorded && storage::hashOf(*recorded) != recorded->hash)
            check.findings.push_back(
                fmt::format("evidence {} was altered: it is not what its hash says", recorded->place));
    }
    return status == SQLITE_DONE;
}

bool checkRecord(const DatabaseFile& file, const storage::RecordMark& mark, ReportCheck& check) {
    std::optional<storage::RecordData> record;
    if (!readRecord(file, mark.recordId, record)) return false;
    if (!record) {
        check.findings.push_back(fmt::format("test record {} is not in the database", mark.recordId));
        return true;
    }
    storage::RecordDigest digest(*record);
    if (!addMeasurements(file, mark.recordId, digest, check)) return false;
    if (digest.value() != mark.record)
        check.findings.push_back(
            fmt::format("test record {} is not what it was when the report was made", mark.recordId));
    return true;
}

bool checkHead(const DatabaseFile& file, const storage::ChainHead& head, ReportCheck& check) {
    if (head.place == 0) return true;
    std::optional<storage::EvidenceRow> row;
    const bool read =
        storage::eachEvidence(file.connection(), head.place, [&](const storage::EvidenceRow& found, bool) {
            if (found.place == head.place) row = found;
            return false;
        });
    if (!row) {
        check.findings.push_back(fmt::format("evidence {} is missing", head.place));
    } else if (row->hash != head.hash || storage::hashOf(*row) != head.hash) {
        check.findings.push_back(
            fmt::format("evidence {} is not what it was when the report was made", head.place));
    }
    return read;
}

}  // namespace

ReportCheck checkReport(const std::string& database, const storage::RecordMark& mark) {
    DatabaseFile file(database);
    ReportCheck check;
    if (!file.readTogether(
            [&] { return checkRecord(file, mark, check) && checkHead(file, mark.head, check); }))
        return {.problem = file.problem()};
    return check;
}

}  // namespace kestrix::cli
