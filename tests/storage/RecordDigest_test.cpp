#include "storage/RecordDigest.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <vector>

#include "tests/storage/WorkedExample.h"

namespace kestrix::storage {
namespace {

MeasureData filed() {
    MeasureData measure = exampleMeasurement();
    measure.dataId = 1;
    measure.recordId = 3;
    measure.recordName = "House 7";
    return measure;
}

EvidenceRow recorded() {
    EvidenceRow row = exampleRow();
    row.hash = hashOf(row);
    return row;
}

TEST(RecordDigest, OfTheWorkedExampleIsAsTheDocumentTells) {
    RecordDigest digest(exampleRecord());
    digest.add(filed(), recorded());
    EXPECT_EQ(hexOf(digest.value()), exampled("record"));
}

TEST(RecordDigest, IsAnotherOneForEveryChange) {
    const std::function<void(RecordData&)> changes[] = {
        [](RecordData&) {},
        [](RecordData& record) { record.recordId = 4; },
        [](RecordData& record) { record.projectName += ' '; },
        [](RecordData& record) { record.company += ' '; },
        [](RecordData& record) { record.operators += ' '; },
        [](RecordData& record) { record.addres += ' '; },
        [](RecordData& record) { record.startTime += ' '; },
        [](RecordData& record) { record.endTime += ' '; },
        [](RecordData& record) { record.dates += ' '; },
        [](RecordData& record) { record.samples = 2; },
        [](RecordData& record) { record.serial += ' '; },
        // A text's end that moves into the next field.
        [](RecordData& record) { record.company = "Volt & Sons" + std::exchange(record.operators, ""); },
    };
    std::set<std::string> digests;
    for (const auto& change : changes) {
        RecordData record = exampleRecord();
        change(record);
        digests.insert(hexOf(RecordDigest(record).value()));
    }
    const std::function<void(MeasureData&, std::optional<EvidenceRow>&)> others[] = {
        [](MeasureData&, std::optional<EvidenceRow>&) {},
        [](MeasureData& measure, std::optional<EvidenceRow>&) { measure.dataId = 2; },
        [](MeasureData& measure, std::optional<EvidenceRow>&) { measure.result = "0.47MΩ,500V"; },
        [](MeasureData& measure, std::optional<EvidenceRow>&) { measure.comments = ""; },
        [](MeasureData&, std::optional<EvidenceRow>& row) { row->hash[0] ^= 1; },
        [](MeasureData&, std::optional<EvidenceRow>& row) { row.reset(); },
    };
    for (const auto& change : others) {
        MeasureData measure = filed();
        std::optional<EvidenceRow> row = recorded();
        change(measure, row);
        RecordDigest digest(exampleRecord());
        digest.add(measure, row);
        digests.insert(hexOf(digest.value()));
    }
    EXPECT_EQ(digests.size(), std::size(changes) + std::size(others));
}

TEST(RecordDigest, CountsTheOrderOfItsMeasurements) {
    MeasureData second = filed();
    second.dataId = 2;
    RecordDigest one(exampleRecord());
    one.add(filed(), {});
    one.add(second, {});
    RecordDigest other(exampleRecord());
    other.add(second, {});
    other.add(filed(), {});
    EXPECT_NE(one.value(), other.value());
}

}  // namespace
}  // namespace kestrix::storage
