// What verifying says of a file that cannot be read: one line each, and a status of 1.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "tests/cli/Program.h"
#include "tests/cli/VerificationFixture.h"
#include "tests/storage/Connection.h"
#include "tests/support/OrdinaryUser.h"

namespace kestrix::cli {
namespace {

using ::testing::HasSubstr;
using Call = testing::FailingVfs::Call;

class VerificationFile : public VerificationFixture {
  protected:
    // Of the command, behind the folder's name. Nothing else may come.
    std::string complaint() const {
        const std::string folder = folder_.path().toStdString();
        const Result result = cli::run({"verify", "--documents", folder});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        const std::string begin = "kestrix-cli: " + folder + ": ";
        EXPECT_EQ(result.error.compare(0, begin.size(), begin), 0) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
        return result.error.substr(std::min(begin.size(), result.error.size()));
    }
    void write(std::string_view content) {
        closeDatabase();
        writeFile(path_, content);
    }
    void closeDatabase() { dao_ = storage::ServiceDao(platform::DocumentsFolder(folder_.path())); }
};

TEST_F(VerificationFile, ThatIsMissingIsNotMade) {
    std::filesystem::remove(path_);
    EXPECT_EQ(complaint(), "there is no database\n");
    EXPECT_NE(verify().problem, "");
    EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(VerificationFile, ThatIsEmpty) {
    write("");
    EXPECT_EQ(complaint(), "there is nothing in its database\n");
}

TEST_F(VerificationFile, ThatIsNoDatabase) {
    write("not a database, but long enough to look like one: " + std::string(200, 'x'));
    EXPECT_EQ(complaint(), "it is no database of Kestrix\n");
}

TEST_F(VerificationFile, OfAnotherProgram) {
    run("PRAGMA application_id = 1");
    EXPECT_EQ(complaint(), "it is no database of Kestrix\n");
    std::filesystem::remove(path_);
    run("CREATE TABLE letters (text)");
    EXPECT_EQ(complaint(), "it is no database of Kestrix\n");
}

TEST_F(VerificationFile, WithoutTheTableOfTheMeasurements) {
    recordSome(1);
    run("DROP TABLE measurefrom");
    EXPECT_EQ(complaint(), "the database has no table measurefrom\n");
}

TEST_F(VerificationFile, OfANewerVersion) {
    recordSome(1);
    run("ALTER TABLE evidence ADD COLUMN more TEXT");
    EXPECT_EQ(complaint(),
              "the table evidence of the database is not as this version makes it: a newer version's, or "
              "altered\n");
    run("ALTER TABLE measurefrom ADD COLUMN more TEXT");
    EXPECT_THAT(complaint(), HasSubstr("the table measurefrom of the database"));
}

TEST_F(VerificationFile, WhoseTablesAreNoneOfOurs) {
    recordSome(1);
    run("ALTER TABLE measurefrom RENAME TO other; CREATE VIEW measurefrom AS SELECT * FROM other");
    EXPECT_THAT(complaint(), HasSubstr("the table measurefrom of the database is not as this version"));
    run("DROP VIEW measurefrom;"
        "CREATE TABLE measurefrom (dataId INTEGER, recordId INTEGER, dataName varchar(30), function "
        "varchar(30), "
        "parameters varchar(30), result varchar(30), dateTime varchar(30), comments varchar(30), recordName "
        "varchar(30)); INSERT INTO measurefrom (dataName) VALUES ('S_1')");
    EXPECT_THAT(complaint(), HasSubstr("the table measurefrom of the database is not as this version"));
}

TEST_F(VerificationFile, ThatIsDamaged) {
    recordSome(200);
    file();
    std::string content = contentOf(path_);
    ASSERT_GT(content.size(), 100'000U);
    content.replace(content.size() / 2, content.size() / 4, content.size() / 4, '\xff');
    write(content);
    EXPECT_THAT(complaint(), HasSubstr("is damaged"));
    write(content.substr(0, 20'000));
    EXPECT_THAT(complaint(), HasSubstr("is damaged"));
}

TEST_F(VerificationFile, WhoseRowsLeadRoundInACircleIsDamaged) {
    recordSome(400);
    closeDatabase();
    // Each page of the chain's rows that the one above it names becomes the last of them.
    const std::size_t pageSize = 4096;
    std::string content = contentOf(path_);
    std::size_t mended = 0;
    for (std::size_t page = 0; page + pageSize <= content.size(); page += pageSize) {
        constexpr char kInterior = 5;
        if (page == 0 || content[page] != kInterior) continue;
        ++mended;
        // The rightmost child is the first one.
        const auto firstCell = static_cast<std::size_t>(static_cast<unsigned char>(content[page + 12]))
                                   << 8U |
                               static_cast<unsigned char>(content[page + 13]);
        content.replace(page + 8, 4, content, page + firstCell, 4);
    }
    ASSERT_GT(mended, 0U);
    write(content);
    EXPECT_THAT(complaint(), HasSubstr("it is damaged: its rows do not follow each other"));
}

TEST_F(VerificationFile, WhoseJournalMayNotBeReadIsSaidToBeSo) {
    recordSome(2);
    ASSERT_EQ(chmod(folder_.path().toStdString().c_str(), 0755), 0);
    ASSERT_EQ(chmod(path_.c_str(), 0644), 0);
    ASSERT_EQ(chmod((path_ + "-journal").c_str(), 0), 0);
    EXPECT_EQ(testing::asOrdinaryUser([this] { return verifyDatabase(path_).problem; }),
              "its journal may not be read by this user: " + path_ + "-journal");
}

TEST_F(VerificationFile, WithTheJournalOfAKilledProcessIsSaidToBeSo) {
    recordSome(2);
    file();
    // Its journal and its database at the moment of a press at which both were on the disk, half written.
    std::string database;
    std::string journal;
    vfs_.observe([&](const testing::FailingVfs::Event& event) {
        if (!journal.empty() || event.call != Call::Write || event.path != path_) return;
        database = contentOf(path_);
        journal = contentOf(path_ + "-journal");
    });
    recordSome(1);
    vfs_.observe({});
    ASSERT_NE(journal, "");
    write(database);
    writeFile(path_ + "-journal", journal);
    EXPECT_EQ(complaint(),
              "a process was killed while it wrote: the next start of kestrix, or any command that writes, "
              "undoes what it left half done\n");
    EXPECT_EQ(contentOf(path_), database);
    EXPECT_EQ(contentOf(path_ + "-journal"), journal);
    run("DELETE FROM recordfrom WHERE dataId = 99");  // any writer
    const Verification result = verify();
    EXPECT_TRUE(result.isClean());
    EXPECT_EQ(result.measurements, 2);
}

TEST_F(VerificationFile, ThatAnotherProgramHolds) {
    recordSome(1);
    storage::Connection other(path_);
    other.run("BEGIN EXCLUSIVE");
    EXPECT_THAT(verify().problem, HasSubstr("another program holds the database"));
    other.run("ROLLBACK");
    EXPECT_TRUE(verify().isClean());
}

// Which would wait for whoever writes into it.
TEST_F(VerificationFile, ThatIsAPipeOrAFolderIsSaidToBeNone) {
    QTemporaryDir other;
    const std::string path = other.filePath(QStringLiteral("kestrix.sqlite")).toStdString();
    const std::vector<std::string> words{"verify", "--documents", other.path().toStdString()};
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(complaintsIn(cli::run(words).error), std::vector{"kestrix-cli: " + path + " is no file"});
    ASSERT_EQ(unlink(path.c_str()), 0);
    ASSERT_EQ(mkdir(path.c_str(), 0700), 0);
    EXPECT_EQ(complaintsIn(cli::run(words).error), std::vector{"kestrix-cli: " + path + " is no file"});
}

}  // namespace
}  // namespace kestrix::cli
