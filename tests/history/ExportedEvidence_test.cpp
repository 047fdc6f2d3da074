// How measurements were recorded, in their exports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "storage/TestRecords.h"
#include "tests/history/Exported.h"
#include "tests/storage/WorkedExample.h"

namespace kestrix::history {
namespace {

using ::testing::HasSubstr;

class ExportedEvidence : public storage::QuickStorageFixture {
  protected:
    // The worked example, unsaved.
    void recordExample(storage::EvidenceRow row = storage::exampleRow()) {
        dao_.addMeasureForm(storage::exampleMeasurement());
        sqlite3* opened = nullptr;
        ASSERT_EQ(sqlite3_open(path_.c_str(), &opened), SQLITE_OK);
        EXPECT_TRUE(storage::EvidenceChain(opened).append(row));
        sqlite3_close(opened);
    }
    ExportedRecord found() {
        ExportedRecord record;
        EXPECT_EQ(findExportedRecord(dao_, 0, record), storage::Outcome{});
        return record;
    }

    storage::ServiceDao dao_ = daoWithTables();
};

TEST_F(ExportedEvidence, InJsonIsWhatTheDocumentTells) {
    recordExample();
    const std::string text = written(kJsonFormat, found());
    const std::size_t at = text.find("\"evidence\":{");
    ASSERT_NE(at, std::string::npos) << text;
    std::ostringstream document;
    document << std::ifstream(KESTRIX_SOURCE_DIR "/docs/export.md").rdbuf();
    EXPECT_THAT(document.str(),
                HasSubstr("```json\n" + text.substr(at, text.find("}\n", at) - at) + "\n```\n"));
}

TEST_F(ExportedEvidence, InJsonHoldsTheFramesOfTripTimesByTheirRows) {
    storage::EvidenceRow row = storage::exampleRow();
    row.evidence.tripTimeFrames[0] = std::string(36, '\x01');
    row.evidence.tripTimeFrames[5] = std::string(36, '\xff');
    recordExample(row);
    std::string ones;
    for (int i = 0; i < 36; ++i) ones += "01";
    EXPECT_THAT(written(kJsonFormat, found()), HasSubstr(R"("tripTimes":{"1":")" + ones + R"(","6":")" +
                                                         std::string(72, 'f') + R"("},"hash")"));
}

TEST_F(ExportedEvidence, InJsonIsNullForAMeasurementOfBefore) {
    dao_.addMeasureForm(storage::exampleMeasurement());
    recordExample();
    const std::string text = written(kJsonFormat, found());
    EXPECT_THAT(text, HasSubstr("\"dataId\":1,"));
    EXPECT_THAT(text, HasSubstr("\"evidence\":null}"));
}

TEST_F(ExportedEvidence, ThatCannotBeReadIsNoExport) {
    recordExample();
    storage::Connection(path_).run("DROP TABLE evidence; CREATE TABLE evidence (place INTEGER)");
    std::string bytes;
    const storage::Outcome outcome = kJsonFormat.write(found(), [&bytes](std::string_view piece) {
        bytes += piece;
        return storage::Outcome{};
    });
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(bytes, "");
}

// As `log` does meanwhile: its record and its measurements grow together.
TEST_F(ExportedEvidence, IsReadTogetherWithTheRecordThatGrows) {
    storage::GrowingRecord growing(dao_, storage::testRecord());
    ASSERT_TRUE(growing.begin("2026-03-04 05:06:07").done);
    ASSERT_TRUE(growing.add(storage::exampleMeasurement(), {}).done);
    storage::ServiceDao reader(folder_);
    ExportedRecord record;
    ASSERT_EQ(findExportedRecord(reader, 1, record), storage::Outcome{});
    ASSERT_TRUE(growing.add(storage::exampleMeasurement(), {}).done);
    dao_.setPatience(std::chrono::milliseconds(0));
    record.goesOn = [&] {
        testing::expectWarning(storage::kStatementFailed);
        EXPECT_FALSE(growing.add(storage::exampleMeasurement(), {}).done) << "it would come between";
        return true;
    };
    std::string text;
    EXPECT_EQ(writeRecord(kJsonFormat, record,
                          [&text](std::string_view piece) {
                              text += piece;
                              return storage::Outcome{};
                          }),
              storage::Outcome{});
    EXPECT_THAT(text, HasSubstr("\"samples\":2,"));
    EXPECT_THAT(text, HasSubstr("\"dataId\":2,\"dataName\""));
    EXPECT_TRUE(growing.add(storage::exampleMeasurement(), {}).done) << "nobody reads any more";
}

}  // namespace
}  // namespace kestrix::history
