// `kestrix-cli records`, `show` and `delete`, as whole programs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <nlohmann/json.hpp>

#include "storage/ServiceDao.h"
#include "tests/cli/Program.h"

namespace kestrix::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

class SavedRecordsProgram : public ::testing::Test {
  protected:
    SavedRecordsProgram() { dao_.createTable(); }

    std::int64_t add(const std::string& project, const std::vector<std::string>& results) {
        storage::RecordData record;
        record.projectName = project;
        record.company = "Volt & Sons";
        record.startTime = "2026-03-04 05:06:07";
        record.samples = static_cast<std::int64_t>(results.size());
        dao_.addRecordForm(record);
        const std::int64_t id = dao_.lastOutcome().identity;
        for (const std::string& result : results) {
            storage::MeasureData measure;
            measure.recordId = id;
            measure.recordName = project;
            measure.dataName = "S_1";
            measure.result = result;
            dao_.addMeasureForm(measure);
        }
        return id;
    }
    Result kestrix(std::vector<std::string> words) const {
        words.insert(words.end(), {"--documents", path_});
        return run(std::move(words));
    }

    QTemporaryDir folder_;
    std::string path_ = folder_.path().toStdString();
    storage::ServiceDao dao_{platform::DocumentsFolder(folder_.path())};
};

TEST_F(SavedRecordsProgram, RecordsStandInATableWhateverTheirScript) {
    add("House 7", {"0.2Ω", "0.3Ω"});
    add("状态", {});
    const Result result = kestrix({"records"});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(complaintsIn(result.error), SizeIs(0));
    EXPECT_THAT(
        linesOf(result.output),
        ElementsAre(
            "Id  Project  Company      Address  Operator  Serial number  Start time           Samples",
            "1   House 7  Volt & Sons                                    2026-03-04 05:06:07  2",
            "2   状态     Volt & Sons                                    2026-03-04 05:06:07  0"));
}

TEST_F(SavedRecordsProgram, ShowTellsTheMeasurementsOfOneRecord) {
    add("Other", {"9.9Ω"});
    const std::int64_t id = add("House 7", {"0.2Ω", "0.3Ω"});
    const Result result = kestrix({"show", std::to_string(id)});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(linesOf(result.output), ElementsAre("Id  Data Name  Function  Parameters  Result  Date Time",
                                                    "2   S_1                              0.2Ω",
                                                    "3   S_1                              0.3Ω"));
}

TEST_F(SavedRecordsProgram, ObjectsHaveTheColumnsOfTheDatabaseInTheirOrder) {
    const std::string project = "O'Neill \"בדיקה\" 👷🏽\n";
    const std::int64_t id = add(project, {std::string(100'000, 'x')});
    const Result records = kestrix({"records", "--json"});
    const auto record = nlohmann::ordered_json::parse(records.output);
    EXPECT_EQ(record["projectname"], project);
    EXPECT_EQ(record["dataId"], id);
    std::vector<std::string> names;
    for (const auto& [name, value] : record.items()) names.push_back(name);
    EXPECT_THAT(names, ElementsAre("dataId", "company", "operators", "addres", "startTime", "endTime",
                                   "dates", "samples", "serial", "projectname"));
    const auto measure =
        nlohmann::ordered_json::parse(kestrix({"show", std::to_string(id), "--json"}).output);
    EXPECT_EQ(measure["result"].get<std::string>().size(), 100'000U);
    names.clear();
    for (const auto& [name, value] : measure.items()) names.push_back(name);
    EXPECT_THAT(names, ElementsAre("dataId", "recordId", "dataName", "function", "parameters", "result",
                                   "dateTime", "comments", "recordName"));
}

TEST_F(SavedRecordsProgram, NoTextOfTheTableObeysATerminalOrIsEndless) {
    const std::int64_t id = add("\x1b[2J\u202e\xff", {std::string(100'000, 'x')});
    const Result records = kestrix({"records"});
    EXPECT_EQ(records.output.find('\x1b'), std::string::npos);
    EXPECT_THAT(records.output, HasSubstr("\uFFFD[2J\uFFFD\uFFFD"));
    const std::string row = linesOf(kestrix({"show", std::to_string(id)}).output).at(1);
    EXPECT_LT(row.size(), 300U);
    EXPECT_THAT(row, HasSubstr("x…"));
}

TEST_F(SavedRecordsProgram, DeleteTakesTheRecordWithItsMeasurements) {
    const std::int64_t kept = add("Kept", {"0.1Ω"});
    const std::int64_t id = add("House 7", {"0.2Ω", "0.3Ω"});
    const Result result = kestrix({"delete", std::to_string(id)});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(complaintsIn(result.error),
                ElementsAre("kestrix-cli: test record 2 (House 7) is deleted, with 2 measurements"));
    EXPECT_EQ(dao_.findRecordForm().size(), 1U);
    EXPECT_EQ(dao_.findMeasureForm(true).size(), 1U);
    EXPECT_EQ(dao_.findMeasureofId(kept).size(), 1U);
}

TEST_F(SavedRecordsProgram, ANumberThatNoRecordHasIsSaidInOneLine) {
    add("House 7", {"0.2Ω"});
    for (const char* command : {"show", "delete"}) {
        const Result unknown = kestrix({command, "7"});
        EXPECT_EQ(unknown.status, 1);
        EXPECT_THAT(complaintsIn(unknown.error),
                    ElementsAre("kestrix-cli: there is no test record 7 in " + path_ + ""));
        for (const char* word : {"0", "x", "1x", "4294967297", "1.5"}) {
            const Result wrong = kestrix({command, word});
            EXPECT_EQ(wrong.status, 2) << word;
            EXPECT_THAT(complaintsIn(wrong.error), SizeIs(1)) << wrong.error;
        }
    }
    EXPECT_EQ(dao_.findRecordForm().size(), 1U);
}

TEST_F(SavedRecordsProgram, WhatIsNotThereIsNotMade) {
    const std::string missing = path_ + "/none";
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"records"}, {"show", "1"}, {"delete", "1"}}) {
        std::vector<std::string> all = words;
        all.insert(all.end(), {"--documents", missing});
        EXPECT_EQ(run(all).status, words.front() == "records" ? 0 : 1);
        EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(missing)));
    }
    ASSERT_TRUE(QDir().mkdir(QString::fromStdString(missing)));
    EXPECT_EQ(run({"records", "--documents", missing}).status, 0);
    EXPECT_TRUE(QDir(QString::fromStdString(missing)).isEmpty());
}

TEST_F(SavedRecordsProgram, WhatIsNotOursIsLeftAsItIs) {
    dao_.execSql("PRAGMA application_id = 7");
    const std::string before = contentOf(path_ + "/kestrix.sqlite");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"records"}, {"show", "1"}, {"delete", "1"}}) {
        const Result result = kestrix(words);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(complaintsIn(result.error),
                    ElementsAre("kestrix-cli: database " + path_ +
                                "/kestrix.sqlite is not one of Kestrix's; it is left as it is"));
    }
    EXPECT_EQ(contentOf(path_ + "/kestrix.sqlite"), before);
}

TEST_F(SavedRecordsProgram, AFolderOrADatabaseThatIsNoneIsSaidInOneLine) {
    writeFile(path_ + "/file", "x");
    const Result file = run({"records", "--documents", path_ + "/file"});
    EXPECT_EQ(file.status, 2);
    EXPECT_THAT(complaintsIn(file.error), ElementsAre("kestrix-cli: " + path_ + "/file is no folder"));
    writeFile(path_ + "/kestrix.sqlite", std::string(4096, 'x'));
    const Result damaged = kestrix({"records"});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_THAT(complaintsIn(damaged.error),
                ElementsAre(StartsWith("kestrix-cli: " + path_ + ": the database in ")));
}

}  // namespace
}  // namespace kestrix::cli
