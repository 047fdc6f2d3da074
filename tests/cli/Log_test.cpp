// `kestrix-cli log`, as a whole program: what it stores, where, and how it ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>

#include <csignal>

#include "storage/DatabaseLook.h"
#include "storage/ServiceDao.h"
#include "storage/TestRecords.h"
#include "tests/cli/Program.h"
#include "tests/storage/Connection.h"
#include "tests/support/EventLoop.h"

namespace kestrix::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

class Log : public ::testing::Test {
  protected:
    Log() {
        writeFile(scenario_,
                  "rate 20\nrepeat forever\nfunction insulation voltage=500 reference=1.0\n"
                  "reading 1 11.0 Mohm\nreading 2 523 V\nshow 3 frames\n"
                  "reading 1 22.0 Mohm\nshow 3 frames\n");
    }
    std::vector<std::string> log(std::vector<std::string> more = {}) const {
        std::vector<std::string> words{
            "log", "simulator:" + scenario_, "--project", "House 7", "--documents", documents_};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }
    storage::ServiceDao dao() const {
        return storage::ServiceDao(platform::DocumentsFolder(QString::fromStdString(documents_)));
    }
    // Everything that it said is there, each filed with its record, and nothing else.
    void expectAllIsFiled(const std::string& output) {
        storage::ServiceDao dao = this->dao();
        std::size_t rows = 0;
        for (const storage::RecordData& record : dao.findRecordForm()) {
            const auto measures = dao.findMeasureofId(record.recordId);
            EXPECT_EQ(record.samples, static_cast<std::int64_t>(measures.size()));
            rows += measures.size();
            for (const auto& measure : measures) EXPECT_EQ(measure.recordName, record.projectName);
        }
        EXPECT_EQ(dao.findMeasureForm(true).size(), rows);
        for (const std::string& line : linesOf(output)) {
            const std::int64_t id = std::stoll(line.substr(line.find(' ')));
            EXPECT_THAT(dao.findMeasureofDataId(id), SizeIs(1)) << line;
        }
    }

    QTemporaryDir folder_;
    const std::string scenario_ = folder_.path().toStdString() + "/two.scenario";
    const std::string documents_ = folder_.path().toStdString() + "/documents";
};

TEST_F(Log, StoresEachChangeInATestRecordOfItsOwn) {
    const Result result = run(log({"--company", "Volt & Sons", "--operator", "O'Neill", "--count", "3"}));
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(complaintsIn(result.error),
                ElementsAre("kestrix-cli: 3 measurements in test record 1 (House 7)"));
    EXPECT_THAT(linesOf(result.output), SizeIs(3));
    expectAllIsFiled(result.output);
    storage::ServiceDao dao = this->dao();
    const storage::RecordData record = dao.findRecordForm().at(0);
    const auto measures = dao.findMeasureofId(1);
    EXPECT_EQ(record.company, "Volt & Sons");
    EXPECT_EQ(record.operators, "O'Neill");
    EXPECT_EQ(record.serial, "---");
    EXPECT_EQ(record.startTime, measures.at(0).dateTime);
    EXPECT_EQ(measures.at(0).dataName, "S_1");
    EXPECT_EQ(measures.at(2).dataName, "S_3");
    EXPECT_EQ(measures.at(0).result, measures.at(2).result);
    EXPECT_NE(measures.at(0).result, measures.at(1).result);
    EXPECT_EQ(measures.at(0).comments, " ");
}

TEST_F(Log, StoresTheEvidenceOfEachThatVerifyDerivesAgain) {
    ASSERT_EQ(run(log({"--count", "3"})).status, 0);
    const Result verified = run({"verify", "--documents", documents_});
    EXPECT_EQ(verified.status, 0) << verified.error;
    EXPECT_EQ(verified.output, "3 measurements, 3 derived again, chain whole, 3 simulated\n");
    const Result shown = run({"show", "1", "--evidence", "--documents", documents_});
    EXPECT_EQ(shown.status, 0) << shown.error;
    for (const storage::MeasureData& measure : dao().findMeasureofId(1))
        EXPECT_THAT(shown.output, HasSubstr("  derived: " + measure.function + " | " + measure.parameters +
                                            " | " + measure.result + "\n"));
    EXPECT_THAT(shown.output, HasSubstr("simulated by "));
    EXPECT_THAT(shown.output, HasSubstr("     8  55 aa           marker 55 AA\n"));
    EXPECT_THAT(shown.output, ::testing::Not(HasSubstr("ALTERED")));
    storage::Connection(documents_ + "/kestrix.sqlite")
        .run("UPDATE evidence SET origin = 'Simulated' WHERE place = 2");
    EXPECT_THAT(run({"show", "1", "--evidence", "--documents", documents_}).output,
                HasSubstr("  THIS EVIDENCE WAS ALTERED\n"));
}

TEST_F(Log, StoresAtTheTimesThatItIsTold) {
    const Result result = run(log({"--every", "1", "--count", "2"}));
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(linesOf(result.output), SizeIs(2));
    expectAllIsFiled(result.output);
}

TEST_F(Log, ASignalEndsItWithItsRecordRight) {
    Program program(log());
    ASSERT_TRUE(program.waitForOutput(" S_2 "));
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), 0) << program.error();
    expectAllIsFiled(program.output());
}

TEST_F(Log, AKillLosesNothingThatWasStored) {
    Program program(log());
    ASSERT_TRUE(program.waitForOutput(" S_2 "));
    program.signal(SIGKILL);
    EXPECT_EQ(program.waitForEnd(), -SIGKILL);
    expectAllIsFiled(program.output());
}

TEST_F(Log, ARecordThatStayedEmptyIsTakenAway) {
    const Result result =
        run({"log", "tcp://127.0.0.1:1", "--project", "x", "--documents", documents_, "--seconds", "1"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error),
                ElementsAre("kestrix-cli: tcp://127.0.0.1:1: no reading came (Connection refused)"));
    EXPECT_THAT(dao().findRecordForm(), SizeIs(0));
}

TEST_F(Log, EndsWhenItsRecordIsDeleted) {
    Program program(log());
    ASSERT_TRUE(program.waitForOutput(" S_2 "));
    storage::ServiceDao dao = this->dao();
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao, 1, deleted).done);
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_THAT(complaintsIn(program.error()), SizeIs(1)) << program.error();
    EXPECT_THAT(program.error(), HasSubstr("was deleted meanwhile, with its "));
    EXPECT_THAT(dao.findMeasureForm(true), SizeIs(0)) << "none is left without its record";
}

TEST_F(Log, GoesOnRecordingWhenItsReaderHasGoneAndStillSaysWhatFailed) {
    Program program(log());
    ASSERT_TRUE(program.waitForOutput(" S_1 "));
    program.closeOutput();
    storage::ServiceDao dao = this->dao();
    ASSERT_TRUE(kestrix::testing::spinUntil([&dao] { return dao.findMeasureofId(1).size() >= 4; }));
    storage::DeletedRecord deleted;
    ASSERT_TRUE(storage::deleteRecord(dao, 1, deleted).done);
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_THAT(program.error(), HasSubstr("was deleted meanwhile, with its "));
}

TEST_F(Log, AFullDiskEndsItWithOneLineAndWhatItSaidIsThere) {
    Program program(log());
    ASSERT_TRUE(program.waitForOutput(" S_2 "));
    program.limitFileSize(0);
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_THAT(program.error(), HasSubstr(", then no more: the disk is full"));
    expectAllIsFiled(program.output());
}

TEST_F(Log, NoMadeUpReadingComesAmongRealOnesNorTheOtherWayRound) {
    EXPECT_EQ(run(log({"--count", "1"})).status, 0);
    EXPECT_EQ(storage::lookAtDatabase(platform::DocumentsFolder(QString::fromStdString(documents_)),
                                      storage::ServiceDao::kPatience)
                  .readings,
              storage::Readings::MadeUp);
    const Result real = run({"log", "tcp://127.0.0.1:1", "--project", "x", "--documents", documents_});
    EXPECT_EQ(real.status, 2);
    EXPECT_THAT(complaintsIn(real.error),
                ElementsAre("kestrix-cli: " + documents_ +
                            " holds made-up readings; what a tester measures is not kept there"));
    const std::string other = documents_ + " real";
    EXPECT_EQ(
        run({"log", "tcp://127.0.0.1:1", "--project", "x", "--documents", other, "--seconds", "1"}).status,
        1);
    const Result madeUp = run({"log", "simulator:", "--project", "x", "--documents", other, "--count", "1"});
    EXPECT_EQ(madeUp.status, 2);
    EXPECT_THAT(madeUp.error, HasSubstr("holds what was measured"));
}

TEST_F(Log, WithoutAFolderMadeUpReadingsGoBesideTheUsers) {
    Surroundings setup;
    setup.environment = {"XDG_CONFIG_HOME=" + folder_.path().toStdString()};
    Program program({"log", "simulator:" + scenario_, "--project", "x", "--count", "1"}, setup);
    EXPECT_EQ(program.waitForEnd(), 0) << program.error();
    const QDir home(QString::fromStdString(program.folder()));
    EXPECT_TRUE(home.exists(QStringLiteral("Documents/Kestrix simulated/kestrix.sqlite")));
    EXPECT_FALSE(home.exists(QStringLiteral("Documents/Kestrix")));
}

TEST_F(Log, WhatCannotBeUsedIsSaidBeforeAnythingIsMade) {
    struct Case {
        std::vector<std::string> words;
        int status;
        const char* line;
    };
    writeFile(folder_.path().toStdString() + "/file", "x");
    const Case cases[] = {
        {{"log", "simulator:", "--documents", documents_}, 2, "--project is required"},
        {{"log", "simulator:", "--project", " ", "--documents", documents_}, 2, "--project"},
        {{"log", "simulator:", "--project", "", "--documents", documents_}, 2, "--project"},
        {{"log", "nowhere:", "--project", "x", "--documents", documents_}, 2, "nowhere"},
        {{"log", "simulator:", "--project", "x", "--documents", folder_.path().toStdString() + "/file"},
         2,
         "is no folder"},
        {log({"--every", "0"}), 2, "--every"},
        {log({"--count", "0"}), 2, "--count"},
        {log({"--every", "1", "--changes"}), 2, "--changes"},
    };
    for (const Case& each : cases) {
        const Result result = run(each.words);
        EXPECT_EQ(result.status, each.status) << result.error;
        EXPECT_THAT(result.error, HasSubstr(each.line));
        EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(documents_)));
    }
}

}  // namespace
}  // namespace kestrix::cli
