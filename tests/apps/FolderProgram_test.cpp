// What can happen to the folder while a real process records into it.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QTemporaryDir>

#include <csignal>
#include <filesystem>

#include "tests/cli/Program.h"
#include "tests/storage/Connection.h"

namespace kestrix {
namespace {

namespace fs = std::filesystem;
using cli::Program;
using cli::Surroundings;

class FolderProgram : public testing::Test {
  protected:
    QTemporaryDir temporary_;
    std::string folder_ = temporary_.filePath(QStringLiteral("documents")).toStdString();

    static Surroundings setup() {
        Surroundings made;
        made.program = "folder_presses";
        made.ownSettings = false;
        return made;
    }
    // The answer to one press.
    static std::string press(Program& program) { return answer(program, ""); }
    static std::string answer(Program& program, const std::string& line) {
        const std::size_t before = program.output().size();
        EXPECT_TRUE(program.send(line + "\n"));
        EXPECT_TRUE(
            program.waitUntil([&] { return program.output().find('\n', before) != std::string::npos; }));
        return program.output().substr(before);
    }
    std::string stored() const {
        return storage::Connection(folder_ + "/kestrix.sqlite").value("SELECT count(*) FROM measurefrom");
    }
};

TEST_F(FolderProgram, AKilledProcessHoldsNobodyOffAndLosesNoRow) {
    {
        Program program({folder_}, setup());
        ASSERT_TRUE(program.waitForOutput("ready 0"));
        EXPECT_EQ(press(program), "stored 1\n");
        EXPECT_EQ(press(program), "stored 2\n");
        program.signal(SIGKILL);
        EXPECT_EQ(program.wait(), -SIGKILL);
    }
    Program again({folder_}, setup());
    ASSERT_TRUE(again.waitForOutput("ready 2")) << again.output();
    EXPECT_EQ(press(again), "stored 3\n");
}

TEST_F(FolderProgram, AFolderThatVanishesIsSaidAtThePressAndWorksWhenItIsBack) {
    Program program({folder_}, setup());
    ASSERT_TRUE(program.waitForOutput("ready 0"));
    EXPECT_EQ(press(program), "stored 1\n");
    fs::rename(folder_, folder_ + ".gone");
    EXPECT_EQ(press(program), "failed there is no folder " + folder_ + " (unable to open database file)\n");
    EXPECT_FALSE(fs::exists(folder_));
    fs::rename(folder_ + ".gone", folder_);
    EXPECT_EQ(press(program), "stored 2\n");
    EXPECT_EQ(stored(), "2");
}

// No file of the process may grow: what a full disk answers to every user.
TEST_F(FolderProgram, ADiskWithoutRoomIsSaidAtThePressAndWorksWhenThereIsRoom) {
    Program program({folder_}, setup());
    ASSERT_TRUE(program.waitForOutput("ready 0"));
    EXPECT_EQ(press(program), "stored 1\n");
    program.limitFileSize(512);
    EXPECT_EQ(press(program).rfind("failed the disk is full (", 0), 0U) << program.output();
    program.limitFileSize(RLIM_INFINITY);
    EXPECT_EQ(press(program), "stored 2\n");
    EXPECT_EQ(stored(), "2");
}

TEST_F(FolderProgram, AFolderOfTwoNamesHasOneWindow) {
    Program first({folder_}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0"));
    const std::string link = folder_ + ".link";
    fs::create_directory_symlink(folder_, link);
    // The first one does not turn its event loop here, so it does not answer.
    const cli::Result second = cli::run({link}, {}, setup());
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, link + " is in use by process " + std::to_string(first.id()) + "\n");
    EXPECT_EQ(press(first), "stored 1\n");
}

TEST_F(FolderProgram, AFolderThatTakesNoLockHasOneWindow) {
    fs::create_directory(folder_);
    fs::create_symlink("nowhere", folder_ + "/kestrix.lock");
    Program first({folder_}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0"));
    const cli::Result second = cli::run({folder_}, {}, setup());
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, folder_ + " is in use by another program\n");
    EXPECT_EQ(press(first), "stored 1\n");
}

TEST_F(FolderProgram, AFolderThatWasAwayHasOneWindow) {
    const fs::path above = fs::path(folder_) / "above";
    const std::string away = (above / "documents").string();
    fs::create_directory(folder_);
    cli::writeFile(above.string(), "");
    Program first({away}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0"));
    fs::remove(above);
    const cli::Result second = cli::run({away}, {}, setup());
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, away + " is in use by another program\n");
}

// A folder that was not there at the start, and what another process then put there.
TEST_F(FolderProgram, ADatabaseOfTheOtherKindThatIsPutInItsPlaceTakesNothing) {
    const std::string measured = folder_ + "/measured";
    const std::string madeUp = folder_ + "/madeUp";
    const std::string capture = temporary_.path().toStdString() + "/empty.kxc";
    cli::writeFile(capture, "");
    fs::create_directories(measured);
    fs::create_directories(madeUp);
    {
        Program other({madeUp, "replay:" + capture}, setup());
        ASSERT_TRUE(other.waitForOutput("ready 0")) << other.output();
        EXPECT_EQ(press(other), "stored 1\n");
    }
    Program first({measured, "tcp://127.0.0.1:1"}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0")) << first.output();
    EXPECT_EQ(press(first), "stored 1\n");
    fs::rename(measured + "/kestrix.sqlite", measured + "/own");
    fs::copy_file(madeUp + "/kestrix.sqlite", measured + "/kestrix.sqlite");
    EXPECT_EQ(press(first).rfind("failed " + measured + " holds made-up readings", 0), 0U) << first.output();
    {
        storage::Connection there(measured + "/kestrix.sqlite");
        EXPECT_EQ(there.value("SELECT count(*) FROM measurefrom"), "1");
        EXPECT_EQ(there.value("PRAGMA application_id"), "1264078165");
    }
    fs::rename(measured + "/own", measured + "/kestrix.sqlite");
    EXPECT_EQ(press(first), "stored 2\n");
}

TEST_F(FolderProgram, ADatabaseWithoutAMarkThatIsPutInItsPlaceGetsOne) {
    Program program({folder_, "tcp://127.0.0.1:1"}, setup());
    ASSERT_TRUE(program.waitForOutput("ready 0")) << program.output();
    EXPECT_EQ(press(program), "stored 1\n");
    fs::copy_file(folder_ + "/kestrix.sqlite", folder_ + "/before");
    storage::Connection(folder_ + "/before").run("PRAGMA application_id = 0");
    fs::rename(folder_ + "/before", folder_ + "/kestrix.sqlite");
    EXPECT_EQ(press(program), "stored 2\n");
    EXPECT_EQ(storage::Connection(folder_ + "/kestrix.sqlite").value("PRAGMA application_id"), "1264078149");
}

class FolderThatComesBack : public FolderProgram {
  protected:
    std::string above_ = folder_ + "/above";
    std::string away_ = above_ + "/documents";
    std::string elsewhere_ = folder_ + "/elsewhere";

    void SetUp() override {
        fs::create_directory(folder_);
        cli::writeFile(above_, "");
    }
    void recordElsewhere(Program& other) const {
        ASSERT_TRUE(other.waitForOutput("ready 0")) << other.output();
        EXPECT_EQ(press(other), "stored 1\n");
    }
    // The folder is where it was missed.
    void comeBack() const {
        fs::remove(above_);
        fs::create_directory(above_);
        fs::rename(elsewhere_, away_);
    }
    void comeBackWith(const std::string& uri) const {
        {
            Program other({elsewhere_, uri}, setup());
            recordElsewhere(other);
        }
        comeBack();
    }
    std::string storedThere() const {
        return storage::Connection(away_ + "/kestrix.sqlite").value("SELECT count(*) FROM measurefrom");
    }
};

constexpr const char* kTester = "tcp://127.0.0.1:1";

TEST_F(FolderThatComesBack, IsClaimedBeforeTheFirstRowIsStored) {
    Program first({away_, kTester}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0"));
    EXPECT_EQ(press(first).rfind("failed there is no folder " + away_, 0), 0U) << first.output();
    comeBackWith(kTester);
    EXPECT_EQ(press(first), "stored 2\n");
    fs::create_directory_symlink(away_, elsewhere_);
    const cli::Result second = cli::run({elsewhere_, kTester}, {}, setup());
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, elsewhere_ + " is in use by process " + std::to_string(first.id()) + "\n");
    EXPECT_EQ(press(first), "stored 3\n");
}

TEST_F(FolderThatComesBack, WhatWasUnsavedInItIsOfEarlierSessions) {
    Program first({away_, kTester}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0"));
    comeBackWith(kTester);
    EXPECT_EQ(press(first), "stored 2\n");
    EXPECT_EQ(press(first), "stored 3\n");
    EXPECT_EQ(answer(first, "earlier"), "earlier 1\n");
}

TEST_F(FolderThatComesBack, WhatIsRecordedIntoAFileThatHadToBeMadeAnewIsOfThisSession) {
    const std::string file = elsewhere_ + "/kestrix.sqlite";
    {
        Program earlier({elsewhere_, kTester}, setup());
        recordElsewhere(earlier);
    }
    Program window({elsewhere_, kTester}, setup());
    ASSERT_TRUE(window.waitForOutput("ready 1"));
    EXPECT_EQ(answer(window, "earlier"), "earlier 1\n");
    fs::rename(file, folder_ + "/away.sqlite");
    fs::copy(folder_ + "/away.sqlite", file);  // a copy in its place: all in it is of earlier sessions
    EXPECT_EQ(press(window), "stored 2\n");
    EXPECT_EQ(answer(window, "earlier"), "earlier 1\n");
}

TEST_F(FolderThatComesBack, IsLeftToTheWindowThatHasItByThen) {
    Program first({away_, kTester}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0"));
    {
        Program second({elsewhere_, kTester}, setup());
        recordElsewhere(second);
        comeBack();  // which moves it under the second one's feet
        const std::string refused =
            "failed " + away_ + " is in use by process " + std::to_string(second.id()) + "\n";
        EXPECT_EQ(press(first), refused);
        EXPECT_EQ(press(first), refused);
        EXPECT_EQ(storedThere(), "1");
    }
    EXPECT_EQ(press(first), "stored 2\n");  // the other one has ended
}

TEST_F(FolderThatComesBack, TakesNoReadingsOfTheOtherKind) {
    const std::string capture = folder_ + "/empty.kxc";
    cli::writeFile(capture, "");
    Program first({away_, kTester}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 0"));
    comeBackWith("replay:" + capture);
    EXPECT_EQ(press(first),
              "failed " + away_ + " holds made-up readings; what a tester measures is not kept there\n");
    EXPECT_EQ(storedThere(), "1");
    // Nor is it held by a process that does not record into it.
    fs::rename(away_, elsewhere_);
    Program second({elsewhere_, "replay:" + capture}, setup());
    EXPECT_TRUE(second.waitForOutput("ready 1")) << second.output();
}

// Whoever replaces the folder while it is open.
TEST_F(FolderThatComesBack, OneThatIsReplacedIsClaimedAnew) {
    comeBackWith(kTester);
    Program first({away_, kTester}, setup());
    ASSERT_TRUE(first.waitForOutput("ready 1"));
    EXPECT_EQ(press(first), "stored 2\n");
    fs::rename(away_, elsewhere_);
    {
        Program second({elsewhere_, kTester}, setup());
        EXPECT_FALSE(second.waitForOutput("ready"));  // it is still the first one's
    }
    fs::create_directory(away_);
    fs::copy_file(elsewhere_ + "/kestrix.sqlite", away_ + "/kestrix.sqlite");
    EXPECT_EQ(press(first), "stored 3\n");
    Program second({elsewhere_, kTester}, setup());
    EXPECT_TRUE(second.waitForOutput("ready 2"));
}

TEST_F(FolderProgram, WithoutItsNoteTheDatabaseSaysWhichKindItHolds) {
    const std::string capture = temporary_.path().toStdString() + "/empty.kxc";
    cli::writeFile(capture, "");
    const std::string madeUp = "replay:" + capture;
    const struct {
        std::string folder, first, other, refusal;
    } cases[] = {
        {folder_ + "1", kTester, madeUp, " holds what was measured"},
        {folder_ + "2", madeUp, kTester, " holds made-up readings"},
    };
    for (const auto& [folder, first, other, refusal] : cases) {
        {
            Program program({folder, first}, setup());
            ASSERT_TRUE(program.waitForOutput("ready 0"));
            EXPECT_EQ(press(program), "stored 1\n");
        }
        fs::remove(folder + "/kestrix.ini");
        const cli::Result refused = cli::run({folder, other}, {}, setup());
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.output.rfind(folder + refusal, 0), 0U) << refused.output;
        Program again({folder, first}, setup());
        ASSERT_TRUE(again.waitForOutput("ready 1")) << again.output();
        EXPECT_EQ(press(again), "stored 2\n");
    }
}

TEST_F(FolderProgram, AChosenFolderTakesTheKindOfReadingsThatItTookFirst) {
    const std::string capture = temporary_.path().toStdString() + "/empty.kxc";
    cli::writeFile(capture, "");
    const std::string tester = kTester;
    const std::string madeUp = "replay:" + capture;
    struct {
        std::string folder, first, other, refusal;
    } const cases[] = {
        {folder_ + "1", tester, madeUp,
         " holds what was measured; made-up readings (simulator:, replay:) are not kept there\n"},
        {folder_ + "2", madeUp, tester,
         " holds made-up readings; what a tester measures is not kept there\n"},
    };
    for (const auto& [folder, first, other, refusal] : cases) {
        for (const char* row : {"stored 1\n", "stored 2\n"}) {
            Program program({folder, first}, setup());
            ASSERT_TRUE(program.waitForOutput("ready "));
            EXPECT_EQ(press(program), row);
            program.signal(SIGKILL);
            EXPECT_EQ(program.wait(), -SIGKILL);
            const cli::Result refused = cli::run({folder, other}, {}, setup());
            EXPECT_EQ(refused.status, 2);
            EXPECT_EQ(refused.output, folder + refusal);
        }
    }
}

// Nobody noted there what they are: they may be certificates.
TEST_F(FolderProgram, AFolderOfBeforeTakesNoMadeUpReadings) {
    const std::string capture = temporary_.path().toStdString() + "/empty.kxc";
    cli::writeFile(capture, "");
    fs::create_directory(folder_);
    cli::writeFile(folder_ + "/kestrix.sqlite", "");
    EXPECT_EQ(cli::run({folder_, "replay:" + capture}, {}, setup()).status, 2);
    EXPECT_EQ(cli::contentOf(folder_ + "/kestrix.sqlite"), "");
    Program program({folder_, "tcp://127.0.0.1:1"}, setup());
    EXPECT_TRUE(program.waitForOutput("ready 0"));
}

TEST_F(FolderProgram, EachFolderHasItsTablesAndItsSettings) {
    for (const char* name : {"/a", "/b"}) {
        Program program({temporary_.path().toStdString() + name}, setup());
        ASSERT_TRUE(program.waitForOutput("ready 0"));
        EXPECT_EQ(press(program), "stored 1\n") << name;
        EXPECT_NE(
            cli::contentOf(temporary_.path().toStdString() + name + "/kestrix.ini").find("firstOrvo=true"),
            std::string::npos)
            << name;
    }
}

TEST_F(FolderProgram, FolderAndFilesAreTheirOwnersAlone) {
    Program program({folder_}, setup());
    ASSERT_TRUE(program.waitForOutput("ready 0"));
    EXPECT_EQ(press(program), "stored 1\n");
    EXPECT_EQ(fs::status(folder_).permissions(), fs::perms::owner_all);
    int files = 0;
    for (const auto& entry : fs::directory_iterator(folder_)) {
        EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write)
            << entry.path();
        ++files;
    }
    EXPECT_EQ(files, 4);  // database, journal, settings, lock
}

}  // namespace
}  // namespace kestrix
