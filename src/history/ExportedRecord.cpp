#include "history/ExportedRecord.h"

#include <QCoreApplication>

#include <utility>

namespace kestrix::history {

storage::Outcome eachMeasurement(const ExportedRecord& record, const MeasureVisitor& visit) {
    bool goesOn = true;
    storage::Outcome outcome = record.measurements([&](const storage::MeasureData& measure) {
        goesOn = !record.goesOn || record.goesOn();
        return goesOn && visit(measure);
    });
    return goesOn ? outcome : cutShort();
}

storage::Outcome findRecorded(const ExportedRecord& record, std::int64_t dataId,
                              std::optional<storage::EvidenceRow>& found) {
    found.reset();
    if (record.evidence == nullptr) return {};
    found = record.evidence->findRecorded(dataId);
    return record.evidence->lastOutcome();
}

storage::Outcome cutShort() {
    return {false, QCoreApplication::translate("Export", "the export was cut short").toStdString(), 0};
}

storage::Outcome findExportedRecord(storage::ServiceDao& dao, std::int64_t recordId, ExportedRecord& found) {
    std::vector<storage::RecordData> records = dao.findRecordofId(recordId);
    if (!dao.lastOutcome().done) return dao.lastOutcome();
    found.record.reset();
    if (!records.empty()) found.record = std::move(records.back());
    found.measurements = [&dao, recordId](const MeasureVisitor& visit) {
        dao.eachMeasureofId(recordId, visit);
        return dao.lastOutcome();
    };
    found.evidence = &dao;
    found.databaseId = recordId;
    return {};
}

MeasureSource measurementsIn(const std::vector<storage::MeasureData>& measurements) {
    return [&measurements](const MeasureVisitor& visit) {
        for (const storage::MeasureData& measure : measurements) {
            if (!visit(measure)) break;
        }
        return storage::Outcome{};
    };
}

}  // namespace kestrix::history
