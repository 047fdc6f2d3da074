#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "storage/Evidence.h"
#include "storage/MeasureData.h"
#include "storage/Outcome.h"
#include "storage/RecordData.h"
#include "storage/ServiceDao.h"

// What is done with whole test records. Each step happens as a whole or not at all, whatever fails and
// whoever else uses the file, and answers what came of it.
namespace kestrix::storage {

// What stands in a test record for what was not given.
inline constexpr const char* kNoProjectName = " ";
inline constexpr const char* kNoText = "---";
inline constexpr const char* kNoTime = "(null)";

// Completes what was typed: empty texts get what stands for them; endTime is the date in the start time, its
// first 11 characters, and dates the time of day behind it. startTime: none for a record without
// measurements. Identity and samples stay.
RecordData completed(RecordData typed, const std::optional<std::string>& startTime);

// Inserts the record, and files the measurements under it in this order; the outcome tells the record's
// identity. One of them that is no longer unsaved (filed or deleted by somebody else) undoes all of it.
Outcome fileMeasurements(ServiceDao& dao, const RecordData& record,
                         const std::vector<MeasureData>& measurements);

// A test record that is there before its measurements, which are filed with it one by one as they come. A
// process that is killed leaves the record with those that had come, and samples says how many.
class GrowingRecord {
  public:
    // typed: as completed() takes it. The ServiceDao outlives it.
    GrowingRecord(ServiceDao& dao, RecordData typed) : dao_(dao), record_(std::move(typed)) {}

    // Inserts the record, without measurements; startTime is that of the beginning until the first one comes.
    Outcome begin(const std::string& startTime);
    // Inserts the measurement as one of the record's; the first one's time becomes the record's. On the disk
    // when it is done, and the outcome tells its identity. Fails when somebody deleted the record.
    Outcome add(MeasureData measure, const Evidence& evidence);

    // As it is in the database, once it has begun.
    const RecordData& record() const { return record_; }

  private:
    ServiceDao& dao_;
    RecordData record_;
};

// A test record as it was, with everything that belonged to it.
struct DeletedRecord {
    RecordData record;
    std::vector<MeasureData> measurements;
};

// Deletes the record first, then its measurements one by one. deleted: what it was, when it is done; else it
// stays as it is. Fails when there is no such record: then nothing is deleted.
Outcome deleteRecord(ServiceDao& dao, std::int64_t recordId, DeletedRecord& deleted);

// Puts it back, identities and all.
Outcome putBackRecord(ServiceDao& dao, const DeletedRecord& deleted);

}  // namespace kestrix::storage
