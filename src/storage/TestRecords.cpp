#include "storage/TestRecords.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

#include "storage/Transaction.h"

namespace kestrix::storage {
namespace {

constexpr int kDateLength = 11;  // with the blank behind it

constexpr const char* kNotUnsaved =
    QT_TRANSLATE_NOOP("Outcome", "a measurement was saved elsewhere or deleted meanwhile");

// In bytes, of the text's first so many characters.
std::size_t lengthOfFirst(int characters, const std::string& text) {
    std::size_t length = 0;
    const auto continues = [&] { return (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80; };
    for (; characters > 0 && length < text.size(); --characters) {
        do ++length;
        while (length < text.size() && continues());
    }
    return length;
}

void setTimes(RecordData& record, const std::string& startTime) {
    const std::size_t dateLength = lengthOfFirst(kDateLength, startTime);
    record.startTime = startTime;
    record.endTime = startTime.substr(0, dateLength);
    record.dates = startTime.substr(dateLength);
}

// Whether the statements, which hold 32 bits of an identity, mean this row and no other one.
bool canBeNamed(std::int64_t identity) {
    return static_cast<std::int32_t>(identity) == identity;
}

// What the transaction came to; the identity is that of the row that matters, as committing inserts none.
Outcome outcomeOf(Transaction& transaction, const ServiceDao& dao, std::int64_t identity = 0) {
    if (!transaction.commit()) return dao.lastOutcome();
    return {true, "", identity};
}

bool areUnsaved(ServiceDao& dao, const std::vector<MeasureData>& measurements) {
    if (measurements.empty()) return true;
    std::unordered_set<std::int64_t> unsaved;
    for (const MeasureData& measure : dao.findMeasureForm(false)) unsaved.insert(measure.dataId);
    return std::all_of(measurements.begin(), measurements.end(), [&unsaved](const MeasureData& measure) {
        // Taken out, so that none is filed twice.
        return canBeNamed(measure.dataId) && unsaved.erase(measure.dataId) == 1;
    });
}

}  // namespace

RecordData completed(RecordData typed, const std::optional<std::string>& startTime) {
    if (typed.projectName.empty()) typed.projectName = kNoProjectName;
    for (auto text :
         {&RecordData::company, &RecordData::addres, &RecordData::operators, &RecordData::serial}) {
        if ((typed.*text).empty()) typed.*text = kNoText;
    }
    if (startTime)
        setTimes(typed, *startTime);
    else
        typed.startTime = typed.endTime = typed.dates = kNoTime;
    return typed;
}

Outcome fileMeasurements(ServiceDao& dao, const RecordData& record,
                         const std::vector<MeasureData>& measurements) {
    Transaction transaction(dao);
    if (!dao.lastOutcome().done) return dao.lastOutcome();
    const bool unsaved = areUnsaved(dao, measurements);
    if (!dao.lastOutcome().done) return dao.lastOutcome();
    if (!unsaved) return failure(kNotUnsaved);
    dao.addRecordForm(record);
    const std::int64_t recordId = dao.lastOutcome().identity;
    for (const MeasureData& measure : measurements) {
        if (!dao.lastOutcome().done) break;
        dao.updateMeasureForm(record.projectName, recordId, measure.dataId);
        if (!dao.lastOutcome().done) break;
        MeasureData filed = measure;
        filed.recordName = record.projectName;
        filed.recordId = recordId;
        dao.noteEvidence(EvidenceEvent::Filed, filed);
    }
    return outcomeOf(transaction, dao, recordId);
}

Outcome GrowingRecord::begin(const std::string& startTime) {
    record_ = completed(std::move(record_), startTime);
    record_.samples = 0;
    dao_.addRecordForm(record_);
    record_.recordId = dao_.lastOutcome().identity;
    return dao_.lastOutcome();
}

Outcome GrowingRecord::add(MeasureData measure, const Evidence& evidence) {
    RecordData grown = record_;
    if (grown.samples == 0) setTimes(grown, measure.dateTime);
    ++grown.samples;
    measure.recordId = record_.recordId;
    measure.recordName = record_.projectName;
    Transaction transaction(dao_);
    if (!dao_.lastOutcome().done) return dao_.lastOutcome();
    dao_.updateRecordForm(grown);
    if (!dao_.lastOutcome().done) return dao_.lastOutcome();
    dao_.addMeasureWithEvidence(measure, evidence);
    Outcome outcome = outcomeOf(transaction, dao_, dao_.lastOutcome().identity);
    if (outcome.done) record_ = std::move(grown);
    return outcome;
}

Outcome deleteRecord(ServiceDao& dao, std::int64_t recordId, DeletedRecord& deleted) {
    // Those of no record have this identity.
    if (recordId == 0 || !canBeNamed(recordId)) return recordIsGone();
    Transaction transaction(dao);
    if (!dao.lastOutcome().done) return dao.lastOutcome();
    std::vector<RecordData> records = dao.findRecordofId(recordId);
    if (!dao.lastOutcome().done) return dao.lastOutcome();
    if (records.empty()) return recordIsGone();
    dao.DeleteRecordFormData(recordId);
    if (!dao.lastOutcome().done) return dao.lastOutcome();
    std::vector<MeasureData> measurements = dao.findMeasureofId(recordId);
    std::erase_if(measurements, [](const MeasureData& measure) { return !canBeNamed(measure.dataId); });
    for (const MeasureData& measure : measurements) {
        if (!dao.lastOutcome().done) break;
        dao.noteEvidence(EvidenceEvent::Deleted, measure);
        if (dao.lastOutcome().done) dao.DeleteMeasureFormData(measure.dataId);
    }
    Outcome outcome = outcomeOf(transaction, dao);
    if (outcome.done) deleted = {std::move(records.front()), std::move(measurements)};
    return outcome;
}

Outcome putBackRecord(ServiceDao& dao, const DeletedRecord& deleted) {
    Transaction transaction(dao);
    if (!dao.lastOutcome().done) return dao.lastOutcome();
    dao.restoreRecordForm(deleted.record);
    for (const MeasureData& measure : deleted.measurements) {
        if (!dao.lastOutcome().done) break;
        dao.restoreMeasureForm(measure);
        if (dao.lastOutcome().done) dao.noteEvidence(EvidenceEvent::PutBack, measure);
    }
    return outcomeOf(transaction, dao, deleted.record.recordId);
}

}  // namespace kestrix::storage
