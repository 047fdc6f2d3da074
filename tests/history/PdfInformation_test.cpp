// What the report's information says of the database, as other programs read it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/PdfReport.h"
#include "storage/EvidenceHash.h"
#include "storage/RecordDigest.h"
#include "storage/TestRecords.h"
#include "tests/history/Exported.h"
#include "tests/history/OtherReaders.h"
#include "tests/storage/EvidenceFixture.h"

namespace kestrix::history {
namespace {

using ::testing::HasSubstr;

using storage::hexOf;
using PdfInformation = storage::EvidenceFixture;

TEST_F(PdfInformation, HoldsTheRecordsHashAndTheEndOfTheChain) {
    for (int i = 1; i <= 3; ++i) record(i);
    const auto measurements = dao_.findMeasureForm(false);
    ASSERT_TRUE(fileMeasurements(dao_, storage::testRecord(), measurements).done);
    record(4);
    ExportedRecord exported;
    ASSERT_EQ(findExportedRecord(dao_, 1, exported), storage::Outcome{});
    const auto rows = chain();
    storage::RecordDigest digest(*exported.record);
    for (std::size_t i = 0; i < 3; ++i) digest.add(dao_.findMeasureofId(1).at(i), rows[i]);
    EXPECT_THAT(pdfInfoOf(written(kPdfFormat, exported)),
                HasSubstr("Creator:         Kestrix; record 1 sha256 " + hexOf(digest.value()) +
                          ", evidence 7 sha256 " + hexOf(rows[6].hash) + "\n"));
}

TEST_F(PdfInformation, WithoutEvidenceHoldsTheRecordsHash) {
    const auto all = measurements(2);
    const ExportedRecord exported = exportOf(all);
    storage::RecordDigest digest(*exported.record);
    for (const storage::MeasureData& measure : all) digest.add(measure, {});
    EXPECT_THAT(pdfInfoOf(written(kPdfFormat, exported)),
                HasSubstr("Creator:         Kestrix; record 0 sha256 " + hexOf(digest.value()) + "\n"));
}

TEST_F(PdfInformation, OfMeasurementsWithoutARecordNamesTheProgram) {
    const auto all = measurements(2);
    EXPECT_THAT(pdfInfoOf(written(kPdfFormat, {std::nullopt, measurementsIn(all), kStamp})),
                HasSubstr("Creator:         Kestrix\n"));
}

// A report of many measurements is drawn for seconds.
TEST_F(PdfInformation, OfTheDatabaseKeepsNobodyWaitingWhileItIsDrawn) {
    record(1);
    ASSERT_TRUE(fileMeasurements(dao_, storage::testRecord(), dao_.findMeasureForm(false)).done);
    storage::ServiceDao reader(folder_);
    ExportedRecord exported;
    ASSERT_EQ(findExportedRecord(reader, 1, exported), storage::Outcome{});
    dao_.setPatience(std::chrono::milliseconds(0));
    int recorded = 0;
    const auto sink = [&](std::string_view) {
        recorded += record(2) > 0 ? 1 : 0;
        return storage::Outcome{};
    };
    EXPECT_EQ(writeRecord(kPdfFormat, exported, sink), storage::Outcome{});
    EXPECT_GT(recorded, 0);
}

TEST_F(PdfInformation, ThatCannotBeReadIsNoExport) {
    record(1);
    ASSERT_TRUE(fileMeasurements(dao_, storage::testRecord(), dao_.findMeasureForm(false)).done);
    ExportedRecord exported;
    ASSERT_EQ(findExportedRecord(dao_, 1, exported), storage::Outcome{});
    storage::Connection(path_).run("DROP TABLE evidence; CREATE TABLE evidence (place INTEGER)");
    EXPECT_FALSE(kPdfFormat.write(exported, [](std::string_view) { return storage::Outcome{}; }).done);
}

}  // namespace
}  // namespace kestrix::history
