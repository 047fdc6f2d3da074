// Whether the database still says what a report says of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include "storage/TestRecords.h"
#include "tests/cli/ExportFixture.h"
#include "tests/storage/Connection.h"

namespace kestrix::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// Test record 2 of three measurements with evidence, and its report. Record 1 has none.
class VerifyReport : public ExportFixture {
  protected:
    VerifyReport() {
        for (int i = 1; i <= 3; ++i) record();
        storage::RecordData typed;
        typed.projectName = "House 8";
        EXPECT_TRUE(fileMeasurements(dao_, storage::completed(typed, "2026-03-04 05:06:07"),
                                     dao_.findMeasureForm(false))
                        .done);
        id_ = "2";
        EXPECT_EQ(exported({"--pdf", "--output", report_}).status, 0);
    }
    void record() {
        storage::MeasureData measure;
        measure.dataName = "S_" + std::to_string(++count_);
        measure.result = "0.46";
        dao_.addMeasureWithEvidence(measure, {.frame = std::string(36, 'f'), .source = "bluetooth"});
        EXPECT_TRUE(dao_.lastOutcome().done);
    }
    void change(const std::string& sql) const { storage::Connection(path_ + "/kestrix.sqlite").run(sql); }
    Result verified(const std::string& report) const {
        return run({"verify", "--file", report, "--documents", path_});
    }
    std::vector<std::string> found() const {
        const Result result = verified(report_);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(complaintsIn(result.error),
                    ElementsAre("kestrix-cli: the database says otherwise than the report"));
        return linesOf(result.output);
    }

    int count_ = 0;
    std::string report_ = path_ + "/report.pdf";
};

TEST_F(VerifyReport, SaysThatItDoes) {
    const Result result = verified(report_);
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(result.output, "test record 2 is as it was when the report was made\n");
    EXPECT_EQ(result.error, "");
}

TEST_F(VerifyReport, GoesOnToWhileOthersAreRecordedAndDeleted) {
    record();
    storage::DeletedRecord deleted;
    ASSERT_TRUE(deleteRecord(dao_, 1, deleted).done);
    EXPECT_EQ(verified(report_).status, 0);
}

TEST_F(VerifyReport, NamesTheRecordWhateverIsChangedInIt) {
    for (const char* sql : {"UPDATE recordfrom SET company = 'Ampere' WHERE dataId = 2",
                            "UPDATE recordfrom SET samples = 4 WHERE dataId = 2",
                            "UPDATE measurefrom SET result = '0.47' WHERE dataId = 4",
                            "DELETE FROM measurefrom WHERE dataId = 5",
                            "UPDATE measurefrom SET recordId = 2 WHERE dataId = 1"}) {
        const std::string before = contentOf(path_ + "/kestrix.sqlite");
        change(sql);
        EXPECT_THAT(found(), ElementsAre("test record 2 is not what it was when the report was made")) << sql;
        writeFile(path_ + "/kestrix.sqlite", before);
    }
    EXPECT_EQ(verified(report_).status, 0);
}

TEST_F(VerifyReport, NamesARecordThatIsGone) {
    storage::DeletedRecord deleted;
    ASSERT_TRUE(deleteRecord(dao_, 2, deleted).done);
    EXPECT_THAT(found(), ElementsAre("test record 2 is not in the database"));
    ASSERT_TRUE(putBackRecord(dao_, deleted).done);
    EXPECT_EQ(verified(report_).status, 0) << "put back it is as it was";
}

TEST_F(VerifyReport, NamesEvidenceOfTheRecordThatIsNotWhatItsHashSays) {
    for (const char* column : {"frame = zeroblob(36)", "utc = 1", "accessory = 'Other'", "identity = 'x'"}) {
        const std::string before = contentOf(path_ + "/kestrix.sqlite");
        change(std::string("UPDATE evidence SET ") + column + " WHERE place = 2");
        EXPECT_THAT(found(), ElementsAre("evidence 2 was altered: it is not what its hash says")) << column;
        writeFile(path_ + "/kestrix.sqlite", before);
    }
}

TEST_F(VerifyReport, NamesTheRecordWhoseEvidenceWasWrittenAnew) {
    change("UPDATE evidence SET hash = zeroblob(32) WHERE place = 2");
    EXPECT_THAT(found(), ElementsAre("evidence 2 was altered: it is not what its hash says",
                                     "test record 2 is not what it was when the report was made"));
}

TEST_F(VerifyReport, NamesTheEndOfTheChainThatIsAnotherOne) {
    change("UPDATE evidence SET program = 'kestrix 9' WHERE place = 6");
    EXPECT_THAT(found(), ElementsAre("evidence 6 is not what it was when the report was made"));
    change("DELETE FROM evidence WHERE place = 6");
    EXPECT_THAT(found(), ElementsAre("evidence 6 is missing"));
}

TEST_F(VerifyReport, OfARecordWithoutEvidenceComparesTheRecord) {
    id_ = "1";
    change("DROP TABLE evidence");
    ASSERT_EQ(exported({"--pdf", "--output", path_ + "/older.pdf"}).status, 0);
    EXPECT_EQ(verified(path_ + "/older.pdf").status, 0);
    change("UPDATE measurefrom SET result = '1' WHERE dataId = 1");
    EXPECT_EQ(verified(path_ + "/older.pdf").status, 1);
}

TEST_F(VerifyReport, IsOneJsonObject) {
    const std::vector<std::string> words{"verify", "--file", report_, "--json", "--documents", path_};
    EXPECT_EQ(run(words).output, "{\"record\":2,\"evidence\":6,\"findings\":[]}\n");
    change("DELETE FROM evidence; DELETE FROM recordfrom");
    EXPECT_EQ(
        run(words).output,
        "{\"record\":2,\"evidence\":6,\"findings\":[\"test record 2 is not in the database\",\"evidence 6 "
        "is missing\"]}\n");
}

TEST_F(VerifyReport, ChangesNothing) {
    const std::string before = contentOf(path_ + "/kestrix.sqlite");
    const auto files = filesIn(path_);
    verified(report_);
    EXPECT_EQ(contentOf(path_ + "/kestrix.sqlite"), before);
    EXPECT_EQ(filesIn(path_), files);
}

TEST_F(VerifyReport, IsOneLineForAnyOtherFile) {
    const std::string pdf = contentOf(report_);
    std::string foreign = pdf;
    const std::string creator = std::string("\0K\0e\0s\0t\0r\0i\0x", 14);
    ASSERT_NE(foreign.find(creator), std::string::npos);
    foreign.replace(foreign.find(creator), creator.size(), std::string("\0P\0a\0i\0n\0t\0e\0r", 14));
    foreign.replace(foreign.find(std::string("\0s\0h\0a", 6)), 2, std::string("\0S", 2));
    ASSERT_EQ(mkdir((path_ + "/folder").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo((path_ + "/fifo").c_str(), 0600), 0);
    const std::tuple<const char*, std::string, const char*> files[] = {
        {"empty", "", "it is no PDF, or a damaged one"},
        {"text", "Dear Sirs\n", "it is no PDF, or a damaged one"},
        {"half.pdf", pdf.substr(0, pdf.size() / 2), "it is no PDF, or a damaged one"},
        {"foreign.pdf", foreign, "it is no report of Kestrix"},
    };
    for (const auto& [name, content, why] : files) {
        writeFile(path_ + "/" + name, content);
        const Result result = verified(path_ + "/" + name);
        EXPECT_EQ(result.status, 1) << name;
        EXPECT_EQ(result.output, "") << name;
        EXPECT_THAT(complaintsIn(result.error),
                    ElementsAre("kestrix-cli: " + path_ + "/" + name + ": " + why));
    }
    EXPECT_THAT(verified(path_ + "/folder").error, HasSubstr("/folder: it is no file\n"));
    EXPECT_THAT(verified(path_ + "/fifo").error, HasSubstr("/fifo: it is no file\n"));
    EXPECT_THAT(verified(path_ + "/nothing").error, HasSubstr("/nothing: there is no such file\n"));
}

}  // namespace
}  // namespace kestrix::cli
