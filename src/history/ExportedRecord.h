#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "storage/MeasureData.h"
#include "storage/Outcome.h"
#include "storage/RecordData.h"
#include "storage/ServiceDao.h"

namespace kestrix::history {

// Hands each measurement to the visitor, by ascending identity, until that answers false, and answers whether
// all could be read. May be asked several times.
using MeasureVisitor = std::function<bool(const storage::MeasureData&)>;
using MeasureSource = std::function<storage::Outcome(const MeasureVisitor&)>;

// Takes the next bytes of a file; answers whether it could. After a failure it is not asked again.
using ExportSink = std::function<storage::Outcome(std::string_view bytes)>;

// What is exported.
struct ExportedRecord {
    std::optional<storage::RecordData> record;  // none: it was not found; its measurements may be there
    MeasureSource measurements;
    std::string timeStamp;  // of this export, 14 digits: names its file, and stands for "%@" in the text
    // Asked for again, together with the measurements, when it is written: a record of the database may grow.
    std::optional<std::int64_t> databaseId{};
    // Knows how the measurements were recorded. Null: nobody does, and none has evidence.
    storage::ServiceDao* evidence = nullptr;
    // Asked at each measurement that is read and at each that is drawn, which may take seconds; false: the
    // export is given up. None: it never is.
    std::function<bool()> goesOn{};
    // Told by a format that goes on for long once it has read everything: others may write from then on.
    // None: nobody waits.
    std::function<void()> allIsRead{};
};

// Hands each measurement to the visitor as the record's source does. Fails when the export is given up
// meanwhile: half of a record is none.
storage::Outcome eachMeasurement(const ExportedRecord& record, const MeasureVisitor& visit);

// How the measurement was recorded; none: it has no evidence.
storage::Outcome findRecorded(const ExportedRecord& record, std::int64_t dataId,
                              std::optional<storage::EvidenceRow>& found);

// How an export that was given up ends.
storage::Outcome cutShort();

// The record of this identity as the database has it, of several the last one; its measurements are read
// whenever they are asked for, one by one, and meanwhile nobody can write to the database: a sink behind them
// must not wait for a reader. The time stamp is left to the caller. The ServiceDao outlives it. Fails when
// the record cannot be looked for.
storage::Outcome findExportedRecord(storage::ServiceDao& dao, std::int64_t recordId, ExportedRecord& found);

// Measurements that are in memory already; they outlive the source.
MeasureSource measurementsIn(const std::vector<storage::MeasureData>& measurements);

}  // namespace kestrix::history
