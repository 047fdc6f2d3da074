// What the evidence of a database says of its measurements, changed in every way.
#include "apps/kestrix-cli/Verification.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sqlite3.h>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "display/Steps.h"
#include "live/MeasurementEvidence.h"
#include "protocol/KV3820protocal.h"
#include "storage/EvidenceChain.h"
#include "storage/EvidenceHash.h"
#include "storage/Rows.h"
#include "storage/TestRecords.h"
#include "tests/cli/Program.h"
#include "tests/storage/Connection.h"
#include "tests/support/FailingVfs.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::cli {
namespace {

using ::testing::ElementsAre;
using testing::FrameBuilder;
using ::testing::HasSubstr;

class VerificationTest : public ::testing::Test {
  protected:
    VerificationTest() {
        vfs_.skipSyncs();
        dao_.createTable();
    }
    // As the window does at a press.
    void record(const FrameBuilder::Bytes& frame) {
        protocol::KV3820protocal decoder;
        decoder.initFromNSdata(frame);
        display::recordCame(display_, decoder.return3820data());
        storage::MeasureData measure;
        measure.dataName = "S_" + std::to_string(++count_);
        measure.function = display_.strfunction.value_or("");
        measure.parameters = display_.parameters;
        measure.result = display_.results;
        measure.dateTime = "2026-03-04 05:06:07";
        measure.comments = " ";
        dao_.addMeasureWithEvidence(measure, source_.evidenceOf(display_.measured, false));
        ASSERT_TRUE(dao_.lastOutcome().done) << dao_.lastOutcome().reason;
    }
    void recordSome(int count) {
        for (int i = 1; i <= count; ++i)
            record(FrameBuilder(static_cast<char>('1' + i % 5))
                       .reading(1, static_cast<std::uint16_t>(100 * i), 0)
                       .bytes());
    }
    void file() {
        storage::RecordData typed;
        typed.projectName = "House";
        const auto outcome = storage::fileMeasurements(dao_, storage::completed(typed, "2026-03-04 05:06:07"),
                                                       dao_.findMeasureForm(false));
        ASSERT_TRUE(outcome.done) << outcome.reason;
    }
    void run(const char* sql) const { storage::Connection(path_).run(sql); }
    Verification verify() const { return verifyDatabase(path_); }
    std::vector<std::string> found() const {
        std::vector<std::string> texts;
        const Verification result = verify();
        EXPECT_EQ(result.problem, "");
        for (const auto& finding : result.findings) texts.push_back(finding.text);
        return texts;
    }
    // The rows of both tables, as the application reads them; what cannot be read is said.
    std::string rowsAsRead() const {
        std::ostringstream rows;
        sqlite3* opened = nullptr;
        bool good = sqlite3_open_v2(path_.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK;
        sqlite3_stmt* all = nullptr;
        sqlite3_prepare_v2(opened, "SELECT * FROM measurefrom", -1, &all, nullptr);
        int status = SQLITE_ERROR;
        storage::MeasureData measure;
        while (all != nullptr && (status = sqlite3_step(all)) == SQLITE_ROW) {
            storage::readRow(all, measure);
            rows << measure.dataId << '|' << measure.recordId;
            for (const std::string* text :
                 {&measure.dataName, &measure.function, &measure.parameters, &measure.result,
                  &measure.dateTime, &measure.comments, &measure.recordName})
                rows << '|' << *text;
            rows << '\n';
        }
        good &= status == SQLITE_DONE;
        sqlite3_finalize(all);
        good &= storage::eachEvidence(opened, 0, [&rows](const storage::EvidenceRow& row, bool readable) {
            rows << readable << storage::canonicalForm(row) << storage::hexOf(row.hash) << '\n';
            return true;
        });
        sqlite3_close(opened);
        if (!good) rows << "unreadable";
        return rows.str();
    }

    testing::FailingVfs vfs_;
    QTemporaryDir folder_;
    std::string path_ = folder_.filePath(QStringLiteral("kestrix.sqlite")).toStdString();
    storage::ServiceDao dao_{platform::DocumentsFolder(folder_.path())};
    display::Display display_;
    live::ReadingSource source_;
    int count_ = 0;
};

TEST_F(VerificationTest, DerivesEveryMeasurementAgain) {
    recordSome(5);
    file();
    const Verification result = verify();
    EXPECT_THAT(found(), ElementsAre());
    EXPECT_EQ(result.measurements, 5);
    EXPECT_EQ(result.derived, 5);
    EXPECT_EQ(result.older, 0);
    EXPECT_TRUE(result.chainWhole);
    EXPECT_EQ(result.head.size(), 64U);
}

TEST_F(VerificationTest, OfAnEmptyDatabaseHasNothingToSay) {
    EXPECT_TRUE(verify().isClean());
    EXPECT_EQ(verify().head, "");
}

TEST_F(VerificationTest, NamesAnAlteredResult) {
    recordSome(3);
    const std::string result = dao_.findMeasureofDataId(2).at(0).result;
    run("UPDATE measurefrom SET result = '0.46' WHERE dataId = 2");
    EXPECT_THAT(found(),
                ElementsAre("measurement 2 (S_2): its result is '0.46', and its frames say '" + result + "'",
                            "measurement 2 (S_2) was altered: it is not as it was stored"));
    EXPECT_EQ(verify().derived, 2);
}

TEST_F(VerificationTest, NamesWhatNoFrameSays) {
    recordSome(2);
    run("UPDATE measurefrom SET dateTime = '2027-01-01 00:00:00' WHERE dataId = 1");
    EXPECT_THAT(found(), ElementsAre("measurement 1 (S_1) was altered: it is not as it was stored"));
}

TEST_F(VerificationTest, NamesAMeasurementThatIsFiledElsewhereByHand) {
    recordSome(2);
    file();
    run("UPDATE measurefrom SET recordId = 7, recordName = 'Other' WHERE dataId = 1");
    EXPECT_THAT(found(), ElementsAre("measurement 1 (S_1) was altered: it is not as it was stored"));
}

TEST_F(VerificationTest, NamesAMissingMeasurement) {
    recordSome(3);
    run("DELETE FROM measurefrom WHERE dataId = 3");
    EXPECT_THAT(found(), ElementsAre("measurement 3 is missing"));
}

TEST_F(VerificationTest, KnowsWhatWasDeletedAndPutBack) {
    recordSome(2);
    file();
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted).done);
    EXPECT_THAT(found(), ElementsAre());
    ASSERT_TRUE(storage::putBackRecord(dao_, deleted).done);
    EXPECT_THAT(found(), ElementsAre());
    EXPECT_EQ(verify().derived, 2);
    ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted).done);
    dao_.restoreMeasureForm(deleted.measurements.at(0));
    EXPECT_THAT(found(), ElementsAre("measurement 1 (S_1) was deleted, and is there"));
}

TEST_F(VerificationTest, NamesOneThatWasAlteredBeforeItWasDeleted) {
    recordSome(2);
    file();
    run("UPDATE measurefrom SET dateTime = '2027-01-01 00:00:00' WHERE dataId = 2");
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted).done);
    EXPECT_THAT(found(), ElementsAre("measurement 2 had been altered when it was deleted"));
}

TEST_F(VerificationTest, NamesACountThatWasAlteredAndTheNextPressIsStored) {
    recordSome(2);
    run("UPDATE sqlite_sequence SET seq = 1 WHERE name = 'evidence'");
    EXPECT_THAT(found(), ElementsAre("the database's own count of its evidence was altered: it says 1"));
    run("DELETE FROM sqlite_sequence WHERE name = 'evidence'; ALTER TABLE evidence ADD COLUMN more TEXT");
    recordSome(1);
    EXPECT_EQ(storage::Connection(path_).value("SELECT group_concat(place) FROM evidence"), "1,2,3");
}

TEST_F(VerificationTest, NamesOneThatWasAddedByHandAndOneThatIsOlder) {
    storage::MeasureData measure;
    measure.dataName = "S_0";
    dao_.addMeasureForm(measure);  // as the version of before did
    recordSome(1);
    EXPECT_THAT(found(), ElementsAre());
    EXPECT_EQ(verify().older, 1);
    measure.dataName = "S_9";
    dao_.addMeasureForm(measure);
    EXPECT_THAT(found(), ElementsAre("measurement 3 (S_9) was added by hand: it has no evidence"));
    run("UPDATE measurefrom SET dataId = -7 WHERE dataId = 3");
    EXPECT_THAT(found(), ElementsAre("measurement -7 (S_9) was added by hand: it has no evidence"));
}

TEST_F(VerificationTest, NamesTwoThatWereSwapped) {
    recordSome(3);
    run("UPDATE measurefrom SET dataId = -1 WHERE dataId = 1");
    run("UPDATE measurefrom SET dataId = 1 WHERE dataId = 3");
    run("UPDATE measurefrom SET dataId = 3 WHERE dataId = -1");
    EXPECT_THAT(found(), ::testing::IsSupersetOf(
                             {"measurement 1 (S_3) holds what was recorded as 3: they were swapped",
                              "measurement 3 (S_1) holds what was recorded as 1: they were swapped"}));
}

TEST_F(VerificationTest, NamesEachRowOfTheChainThatIsTakenAwayAlteredOrMoved) {
    recordSome(3);
    const std::string all = path_ + ".whole";
    std::filesystem::copy_file(path_, all);
    const auto after = [&](const char* sql) {
        std::filesystem::copy_file(all, path_, std::filesystem::copy_options::overwrite_existing);
        run(sql);
        EXPECT_FALSE(verify().chainWhole) << sql;
        return found();
    };
    EXPECT_THAT(after("DELETE FROM evidence WHERE place = 1"), ::testing::Contains("evidence 1 is missing"));
    EXPECT_THAT(after("DELETE FROM evidence WHERE place = 2"), ::testing::Contains("evidence 2 is missing"));
    EXPECT_THAT(after("DELETE FROM evidence WHERE place = 3"), ::testing::Contains("evidence 3 is missing"));
    EXPECT_THAT(after("DELETE FROM evidence"), ::testing::Contains("evidence 1 to 3 is missing"));
    EXPECT_THAT(after("UPDATE evidence SET utc = utc + 1 WHERE place = 2"),
                ElementsAre("evidence 2 was altered: it is not what its hash says"));
    EXPECT_THAT(after("UPDATE evidence SET event = 'made up' WHERE place = 2"),
                ElementsAre("evidence 2 holds what no such row can hold"));
    EXPECT_THAT(after("UPDATE evidence SET place = 9 WHERE place = 2; UPDATE evidence SET place = 2 WHERE "
                      "place = 3; UPDATE "
                      "evidence SET place = 3 WHERE place = 9"),
                ::testing::IsSupersetOf({"evidence 2 was altered: it is not what its hash says",
                                         "evidence 3 was altered: it is not what its hash says"}));
}

TEST_F(VerificationTest, FindsEveryByteThatIsChanged) {
    recordSome(3);
    file();
    dao_ = storage::ServiceDao(platform::DocumentsFolder(folder_.path()));
    std::ostringstream content;
    content << std::ifstream(path_, std::ios::binary).rdbuf();
    const std::string whole = content.str();
    const std::string rows = rowsAsRead();
#ifdef __SANITIZE_ADDRESS__
    constexpr std::size_t kStep = 17;  // each takes several times as long
#else
    constexpr std::size_t kStep = 1;
#endif
    std::size_t changedRows = 0;
    for (std::size_t at = 0; at < whole.size(); at += kStep) {
        std::fstream file(path_, std::ios::binary | std::ios::in | std::ios::out);
        const auto put = [&file, at](char byte) {
            file.seekp(static_cast<std::streamoff>(at));
            file.put(byte);
            file.flush();
        };
        put(static_cast<char>(whole[at] ^ 0x15));
        const Verification result = verify();
        // What changed no row may be said or not: it is another table's, or nobody's.
        if (const std::string now = rowsAsRead(); now != rows) {
            ++changedRows;
            ASSERT_FALSE(result.isClean()) << "byte " << at;
        }
        put(whole[at]);
    }
    EXPECT_GT(changedRows, 1000U / kStep);
    EXPECT_TRUE(verify().isClean());
}

TEST_F(VerificationTest, OfAFileThatIsNoneOrAnothersIsOneLine) {
    const std::string other = folder_.filePath(QStringLiteral("other")).toStdString();
    EXPECT_NE(verifyDatabase(other).problem, "");
    EXPECT_FALSE(std::filesystem::exists(other));
    writeFile(other, "not a database, but long enough to look like one: " + std::string(200, 'x'));
    EXPECT_NE(verifyDatabase(other).problem, "");
    run("PRAGMA application_id = 1");
    EXPECT_EQ(verify().problem, "it is no database of Kestrix");
}

TEST_F(VerificationTest, ChangesNothing) {
    recordSome(2);
    const std::string before = contentOf(path_);
    const auto time = std::filesystem::last_write_time(path_);
    verify();
    EXPECT_EQ(contentOf(path_), before);
    EXPECT_EQ(std::filesystem::last_write_time(path_), time);
}

TEST_F(VerificationTest, IsACommandThatTellsAllInLines) {
    recordSome(2);
    const std::vector<std::string> words{"verify", "--documents", folder_.path().toStdString()};
    const Result whole = cli::run(words);
    EXPECT_EQ(whole.status, 0) << whole.error;
    EXPECT_EQ(whole.output, "2 measurements, 2 derived again, chain whole\n");
    run("DELETE FROM measurefrom WHERE dataId = 1");
    const Result missing = cli::run(words);
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.output, "measurement 1 is missing\n1 measurement, 1 derived again, chain whole\n");
    EXPECT_THAT(missing.error, HasSubstr("kestrix-cli: 1 difference\n"));
    const Result json = cli::run({"verify", "--json", "--documents", folder_.path().toStdString()});
    EXPECT_EQ(json.status, 1);
    EXPECT_THAT(json.output,
                HasSubstr(R"("findings":[{"dataId":1,"place":1,"text":"measurement 1 is missing"}]})"));
    const Result nothing = cli::run({"verify", "--documents", folder_.path().toStdString() + "/none"});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_THAT(nothing.error, HasSubstr("there is no database"));
}

}  // namespace
}  // namespace kestrix::cli
