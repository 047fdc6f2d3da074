// What the evidence of a database says of its measurements, changed in every way.
#include "apps/kestrix-cli/Verification.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <filesystem>

#include "storage/TestRecords.h"
#include "tests/cli/Program.h"
#include "tests/cli/VerificationFixture.h"
#include "tests/storage/Connection.h"

namespace kestrix::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class VerificationTest : public VerificationFixture {};

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
                ElementsAre("measurement 2 (S_2) was altered: its result is '0.46', and its frames say '" +
                            result + "'"));
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
    EXPECT_THAT(found(),
                ElementsAre("measurement 1 (S_1) is not in the test record where it was: by hand, or by "
                            "a version that keeps no evidence"));
}

TEST_F(VerificationTest, NamesAMissingMeasurement) {
    recordSome(4);
    const std::string whole = contentOf(path_);
    for (int i = 1; i <= 4; ++i) {
        run(fmt::format("DELETE FROM measurefrom WHERE dataId = {}", i));
        EXPECT_THAT(
            found(),
            ElementsAre(fmt::format(
                "measurement {} is missing: it was deleted by hand, or by a version that keeps no evidence",
                i)));
        writeFile(path_, whole);
    }
}

// The rows stay in their table, and are found by no record.
TEST_F(VerificationTest, NamesAnIndexThatHidesMeasurements) {
    recordSome(3);
    file();
    run("PRAGMA writable_schema = ON; UPDATE sqlite_master SET sql = sql || ' WHERE recordId = 7' WHERE name "
        "= 'measurefrom_recordId'");
    run("REINDEX");
    run("PRAGMA writable_schema = ON; UPDATE sqlite_master SET sql = replace(sql, ' WHERE recordId = 7', '') "
        "WHERE name = 'measurefrom_recordId'");
    EXPECT_THAT(found(),
                ElementsAre(::testing::StartsWith("the database is damaged: row 1 missing from index")));
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
    EXPECT_THAT(
        found(),
        ElementsAre(
            "measurement 3 (S_9) has no evidence: it was added by hand, or by a version that keeps none"));
    run("UPDATE measurefrom SET dataId = -7 WHERE dataId = 3");
    EXPECT_THAT(
        found(),
        ElementsAre(
            "measurement -7 (S_9) has no evidence: it was added by hand, or by a version that keeps none"));
}

TEST_F(VerificationTest, NamesEvidenceThatWasTakenAwayAsAWhole) {
    storage::MeasureData measure;
    measure.dataName = "S_0";
    dao_.addMeasureForm(measure);  // as a version without evidence did
    recordSome(2);
    run("DROP TABLE evidence");
    EXPECT_THAT(found(), ElementsAre("the table of the evidence is missing",
                                     "measurement 2 (S_1) has no evidence: it was added by hand, or by a "
                                     "version that keeps none",
                                     "measurement 3 (S_2) has no evidence: it was added by hand, or by a "
                                     "version that keeps none"));
    EXPECT_FALSE(verify().chainWhole);
    EXPECT_EQ(verify().older, 1);
    dao_ = storage::ServiceDao(platform::DocumentsFolder(folder_.path()));
    recordSome(1);  // which makes the table anew
    EXPECT_THAT(found(), ::testing::SizeIs(2));
}

TEST_F(VerificationTest, NamesAnAlteredNoteOfWhereTheEvidenceBegins) {
    recordSome(3);
    run("PRAGMA user_version = 3");
    EXPECT_THAT(found(), ElementsAre("the database's own note of where its evidence begins was altered: it "
                                     "says 3"));
    run("PRAGMA user_version = -2147483648");
    EXPECT_THAT(found(), ElementsAre("the database's own note of where its evidence begins was altered: it "
                                     "says -2147483648"));
}

TEST_F(VerificationTest, NamesOneThatWasAlteredBeforeItWasFiled) {
    recordSome(2);
    run("UPDATE measurefrom SET dateTime = '2027-01-01 00:00:00' WHERE dataId = 2");
    file();
    const auto altered = ElementsAre("measurement 2 (S_2) had been altered when it was filed");
    EXPECT_THAT(found(), altered);
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted).done);
    ASSERT_TRUE(storage::putBackRecord(dao_, deleted).done);
    EXPECT_THAT(found(), altered);
}

TEST_F(VerificationTest, NamesOneThatWasTakenOutOfItsRecordAndFiledAgain) {
    recordSome(1);
    file();
    run("UPDATE measurefrom SET recordId = 0, recordName = ''");
    file();
    EXPECT_THAT(found(), ElementsAre("measurement 1 had been altered when it was filed"));
}

TEST_F(VerificationTest, NamesOneThatCameBackByHandBeforeItWasFiledOrDeletedOnceMore) {
    recordSome(2);
    const storage::MeasureData unfiled = dao_.findMeasureofDataId(1).at(0);
    file();
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted).done);
    dao_.restoreMeasureForm(unfiled);
    file();
    EXPECT_THAT(found(), ElementsAre("measurement 1 had been deleted, and was there when it was filed"));
    ASSERT_TRUE(storage::deleteRecord(dao_, 2, deleted).done);
    dao_.restoreMeasureForm(deleted.measurements.at(0));
    dao_.restoreRecordForm(deleted.record);
    ASSERT_TRUE(storage::deleteRecord(dao_, 2, deleted).done);
    EXPECT_THAT(found(), ElementsAre("measurement 1 had been deleted, and was there when it was filed",
                                     "measurement 1 had been deleted, and was there when it was deleted"));
}

TEST_F(VerificationTest, NamesOneThatWasTakenAwayByHandBeforeItWasPutBack) {
    recordSome(1);
    file();
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted).done);
    ASSERT_TRUE(storage::putBackRecord(dao_, deleted).done);
    run("DELETE FROM measurefrom; DELETE FROM recordfrom");
    ASSERT_TRUE(storage::putBackRecord(dao_, deleted).done);
    EXPECT_THAT(found(), ElementsAre("measurement 1 was missing when it was put back"));
}

TEST_F(VerificationTest, NamesANumberThatWasGivenTwice) {
    recordSome(2);
    run("DELETE FROM measurefrom WHERE dataId = 2; UPDATE sqlite_sequence SET seq = 1 WHERE name = "
        "'measurefrom'");
    recordSome(1);
    EXPECT_THAT(found(), ::testing::Contains("measurement 2 was recorded twice: its number was given again"));
}

TEST_F(VerificationTest, NamesWhatNoColumnOfARowCanHold) {
    recordSome(3);
    file();
    for (const char* column : {"recordId = '1abc'", "result = CAST(result AS BLOB)"}) {
        SCOPED_TRACE(column);
        run(std::string("UPDATE measurefrom SET ") + column + " WHERE dataId = 2");
        EXPECT_THAT(found(), ElementsAre("measurement 2 (S_2) holds what no such row can hold"));
        run("UPDATE measurefrom SET recordId = 1, result = CAST(result AS TEXT) WHERE dataId = 2");
    }
    run("UPDATE measurefrom SET comments = NULL WHERE dataId = 2");
    EXPECT_THAT(found(), ElementsAre("measurement 2 (S_2) holds what no such row can hold"));
}

TEST_F(VerificationTest, CountsMeasurementsThatAreThereAndWhatWasNotMeasured) {
    recordSome(1);
    origin_ = storage::Origin::Simulated;
    recordSome(2);
    origin_ = storage::Origin::Replayed;
    recordSome(1);
    const std::vector<std::string> words{"verify", "--documents", folder_.path().toStdString()};
    EXPECT_EQ(cli::run(words).output,
              "4 measurements, 4 derived again, chain whole, 2 simulated, 1 replayed\n");
    EXPECT_THAT(cli::run({"verify", "--json", "--documents", folder_.path().toStdString()}).output,
                HasSubstr(R"("derivedAgain":4,"older":0,"simulated":2,"replayed":1,)"));
    file();
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted).done);
    EXPECT_EQ(cli::run(words).output, "0 measurements, 0 derived again, chain whole\n");
}

TEST_F(VerificationTest, TakesAnyNumbersForWhatTheyAre) {
    recordSome(3);
    run("UPDATE evidence SET place = 9223372036854775807 WHERE place = 3;"
        "UPDATE evidence SET place = -5 WHERE place = 2;"
        "UPDATE evidence SET dataId = NULL WHERE place = 1;"
        "UPDATE sqlite_sequence SET seq = 9223372036854775807 WHERE name = 'evidence';"
        "UPDATE measurefrom SET dataId = 9223372036854775807 WHERE dataId = 3;"
        "UPDATE measurefrom SET dataId = -9223372036854775808 WHERE dataId = 2;"
        "PRAGMA user_version = -1");
    EXPECT_THAT(
        found(),
        ::testing::IsSupersetOf(
            {"evidence -5 holds what no such row can hold", "evidence 1 holds what no such row can hold",
             "evidence 2 to 9223372036854775806 is missing",
             "measurement 3 is missing: it was deleted by hand, or by a version that keeps no evidence",
             "measurement 9223372036854775807 (S_3) has no evidence: it was added by hand, or by a "
             "version that keeps none",
             "measurement -9223372036854775808 (S_2) has no evidence: it was added by hand, or by a "
             "version that keeps none"}));
    EXPECT_EQ(verify({.rows = 1}).findings.size(), verify().findings.size());
    run("UPDATE sqlite_sequence SET seq = -9223372036854775808 WHERE name = 'evidence'");
    EXPECT_THAT(found(), ::testing::Contains("the database's own count of its evidence was altered: it says "
                                             "-9223372036854775808"));
}

TEST_F(VerificationTest, NamesTwoThatWereSwapped) {
    recordSome(4);
    const std::string whole = contentOf(path_);
    for (int one = 1; one <= 4; ++one) {
        for (int other = one + 1; other <= 4; ++other) {
            run(
                fmt::format("UPDATE measurefrom SET dataId = -1 WHERE dataId = {0};"
                            "UPDATE measurefrom SET dataId = {0} WHERE dataId = {1};"
                            "UPDATE measurefrom SET dataId = {1} WHERE dataId = -1",
                            one, other));
            const char* const swapped =
                "measurement {0} (S_{1}) holds what was recorded as {1}: they were swapped";
            EXPECT_THAT(found(), ElementsAre(fmt::format(fmt::runtime(swapped), one, other),
                                             fmt::format(fmt::runtime(swapped), other, one)));
            writeFile(path_, whole);
        }
    }
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
    for (const auto& [one, other] : {std::pair(1, 2), std::pair(1, 3), std::pair(2, 3)}) {
        const std::string swap = fmt::format(
            "UPDATE evidence SET place = 9 WHERE place = {0}; UPDATE evidence SET place = {0} WHERE place = "
            "{1};"
            "UPDATE evidence SET place = {1} WHERE place = 9",
            one, other);
        EXPECT_THAT(after(swap.c_str()),
                    ::testing::IsSupersetOf(
                        {fmt::format("evidence {} was altered: it is not what its hash says", one),
                         fmt::format("evidence {} was altered: it is not what its hash says", other)}));
    }
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
    EXPECT_EQ(missing.output,
              "measurement 1 is missing: it was deleted by hand, or by a version that keeps no evidence\n1 "
              "measurement, 1 derived again, chain whole\n");
    EXPECT_THAT(missing.error, HasSubstr("kestrix-cli: 1 difference\n"));
    const Result json = cli::run({"verify", "--json", "--documents", folder_.path().toStdString()});
    EXPECT_EQ(json.status, 1);
    EXPECT_THAT(
        json.output,
        HasSubstr(
            R"("findings":[{"dataId":1,"place":1,"text":"measurement 1 is missing: it was deleted by hand, or by a version that keeps no evidence"}]})"));
    const Result nothing = cli::run({"verify", "--documents", folder_.path().toStdString() + "/none"});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_THAT(nothing.error, HasSubstr("there is no database"));
}

}  // namespace
}  // namespace kestrix::cli
