#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "history/Export.h"
#include "tests/storage/StorageFixture.h"

// Records to export, and what came of them.
namespace kestrix::history {

inline constexpr const char* kStamp = "20260304050607";

// The record of storage::testRecord, with these measurements, which outlive it.
inline ExportedRecord exportOf(const std::vector<storage::MeasureData>& measurements) {
    return {storage::testRecord(), measurementsIn(measurements), kStamp};
}

inline storage::MeasureData measureWith(std::string result, std::int64_t dataId = 17) {
    storage::MeasureData measure = storage::measurement(1);
    measure.dataId = dataId;
    measure.recordId = 3;
    measure.recordName = "House 7";
    measure.result = std::move(result);
    return measure;
}

inline std::vector<storage::MeasureData> measurements(std::size_t count) {
    std::vector<storage::MeasureData> all;
    for (std::size_t i = 0; i < count; ++i)
        all.push_back(measureWith("0.12Ω", static_cast<std::int64_t>(i) + 1));
    return all;
}

// Everything that a format writes, which it is expected to do.
inline std::string written(const ExportFormat& format, const ExportedRecord& record) {
    std::string bytes;
    const storage::Outcome outcome = format.write(record, [&bytes](std::string_view piece) {
        bytes += piece;
        return storage::Outcome{};
    });
    EXPECT_EQ(outcome, storage::Outcome{});
    return bytes;
}

}  // namespace kestrix::history
