// Files that somebody or something else has spoilt, left behind or forbidden.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "storage/ServiceDao.h"
#include "tests/storage/StorageFixture.h"
#include "tests/support/OrdinaryUser.h"

namespace kestrix::storage {
namespace {

namespace fs = std::filesystem;
using testing::asOrdinaryUser;
using testing::kNobody;

class Damage : public StorageFixture {
  protected:
    void write(const std::string& path, const std::string& content) const {
        std::ofstream(path, std::ios::binary) << content;
    }
    std::string contentOf(const fs::path& path) const {
        const std::ifstream file(path, std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        return content.str();
    }
};

TEST_F(Damage, AFileThatIsNoDatabaseIsLeftAloneAndWorksOnceItIsReplaced) {
    const std::string original = path_ + ".original";
    {
        ServiceDao dao = daoWithTables();
        dao.addMeasureForm(measurement(1));
    }
    fs::rename(path_, original);
    const std::string text(5000, '?');
    write(path_, text);

    ServiceDao dao(folder_);
    expectWarnings(kStatementFailed, 3);
    dao.addMeasureForm(measurement(2));
    dao.createTable();
    EXPECT_TRUE(dao.findMeasureForm(true).empty());
    EXPECT_EQ(dao.findRecordFormCount(), 0);
    dao.DeleteMeasureFormData(1);
    EXPECT_EQ(fs::file_size(path_), text.size());

    fs::copy_file(original, path_, fs::copy_options::overwrite_existing);
    EXPECT_EQ(dao.findMeasureForm(true).size(), 1U);
    dao.addMeasureForm(measurement(2));
    EXPECT_EQ(dao.findMeasureForm(true).size(), 2U);
}

TEST_F(Damage, AFileCutShortIsSaidAndNotMadeWorse) {
    {
        ServiceDao dao = daoWithTables();
        MeasureData large = measurement(1);
        large.result = std::string(3000, 'r');
        for (int i = 0; i < 30; ++i) dao.addMeasureForm(large);
    }
    fs::resize_file(path_, 12288);
    ServiceDao dao(folder_);
    testing::expectWarning(kStatementFailed);
    dao.addMeasureForm(measurement(2));
    EXPECT_LT(dao.findMeasureForm(true).size(), 30U);
    EXPECT_EQ(fs::file_size(path_), 12288U);
}

TEST_F(Damage, AnEmptyFileIsADatabaseWithoutTables) {
    write(path_, "");
    ServiceDao dao(folder_);
    EXPECT_FALSE(dao.hasTables());
    dao.createTable();
    dao.addMeasureForm(measurement(1));
    EXPECT_EQ(dao.findMeasureForm(true).size(), 1U);
}

TEST_F(Damage, AFolderInItsPlaceCannotBeOpened) {
    fs::create_directory(path_);
    expectWarnings(kOpeningFailed, 2);
    testing::expectWarning(kStatementFailed);
    ServiceDao dao(folder_);
    dao.addMeasureForm(measurement(1));
    fs::remove(path_);
    dao.createTable();
    dao.addMeasureForm(measurement(1));
    EXPECT_EQ(dao.findMeasureForm(true).size(), 1U);
}

// A process ended in the middle of a transaction, with pages of it in the file already.
TEST_F(Damage, AJournalLeftBehindIsRolledBack) {
    const fs::path left = fs::path(temporary_.path().toStdString()) / "left";
    fs::create_directory(left);
    {
        const ServiceDao dao = daoWithTables();
        Connection other(path_);
        other.run(
            "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200) "
            "INSERT INTO measurefrom (result, comments) SELECT 'whole', zeroblob(2000) FROM n");
        other.run("PRAGMA cache_size = 1; BEGIN; UPDATE measurefrom SET result = 'half done'");
        fs::copy_file(path_, left / "kestrix.sqlite");
        fs::copy_file(path_ + "-journal", left / "kestrix.sqlite-journal");
        other.run("ROLLBACK");
    }
    ASSERT_NE(contentOf(left / "kestrix.sqlite").find("half done"), std::string::npos);
    ServiceDao dao{platform::DocumentsFolder(QString::fromStdString(left.string()))};
    const auto measures = dao.findMeasureForm(true);
    EXPECT_EQ(measures.size(), 200U);
    for (const MeasureData& measure : measures) EXPECT_EQ(measure.result, "whole");
    EXPECT_FALSE(fs::exists(left / "kestrix.sqlite-journal"));
    dao.addMeasureForm(measurement(201));
    EXPECT_EQ(dao.findMeasureForm(true).size(), 201U);
}

class Forbidden : public Damage {
  protected:
    std::string folderPath_ = temporary_.path().toStdString();

    // The folder and what is in it become the ordinary user's.
    void SetUp() override {
        if (geteuid() != 0) return;
        ASSERT_EQ(chown(folderPath_.c_str(), kNobody, kNobody), 0);
        for (const auto& entry : fs::directory_iterator(folderPath_))
            ASSERT_EQ(chown(entry.path().c_str(), kNobody, kNobody), 0);
    }
    void TearDown() override { fs::permissions(folderPath_, fs::perms::owner_all); }

    // What it finds, and what the log said until then.
    static std::string told(ServiceDao& dao) {
        std::string all = std::to_string(dao.findMeasureForm(true).size()) + "\n";
        for (const std::string& line : testing::logLines()) all += line + "\n";
        testing::forgetLogLines();
        return all;
    }
    const std::string opening_ = std::string("warning kestrix.storage: ") + kOpeningFailed + "\n";
    const std::string statement_ = std::string("warning kestrix.storage: ") + kStatementFailed + "\n";
};

TEST_F(Forbidden, AReadOnlyFolderWithoutAFile) {
    const std::string report = asOrdinaryUser([this] {
        expectWarnings(kOpeningFailed, 3);
        expectWarnings(kStatementFailed, 1);
        fs::permissions(folderPath_, fs::perms::owner_read | fs::perms::owner_exec);
        ServiceDao dao(folder_);
        dao.addMeasureForm(measurement(1));
        const std::string before = told(dao);
        fs::permissions(folderPath_, fs::perms::owner_all);
        dao.createTable();
        dao.addMeasureForm(measurement(1));
        return before + told(dao);
    });
    EXPECT_EQ(report, "0\n" + opening_ + opening_ + statement_ + opening_ + "1\n");
}

TEST_F(Forbidden, AReadOnlyFolderWithAFileCanBeReadAndWorksOnceItIsAllowed) {
    const std::string report = asOrdinaryUser([this] {
        expectWarnings(kStatementFailed, 2);
        daoWithTables().addMeasureForm(measurement(1));
        fs::remove(path_ + "-journal");  // which could still be written
        fs::permissions(folderPath_, fs::perms::owner_read | fs::perms::owner_exec);
        ServiceDao dao(folder_);
        dao.addMeasureForm(measurement(2));
        dao.updateMeasureForm("House", 1, 1);
        dao.DeleteMeasureFormData(1);
        const std::string before = told(dao);
        fs::permissions(folderPath_, fs::perms::owner_all);
        dao.addMeasureForm(measurement(2));
        return before + told(dao);
    });
    EXPECT_EQ(report, "1\n" + statement_ + statement_ + "2\n");
}

TEST_F(Forbidden, AFolderThatBecomesReadOnlyUnderAnOpenConnectionStopsNothing) {
    const std::string report = asOrdinaryUser([this] {
        ServiceDao dao = daoWithTables();
        dao.addMeasureForm(measurement(1));
        fs::permissions(folderPath_, fs::perms::owner_read | fs::perms::owner_exec);
        dao.addMeasureForm(measurement(2));
        return told(dao);
    });
    EXPECT_EQ(report, "2\n");
}

TEST_F(Forbidden, AReadOnlyFileCanBeReadAndWorksOnceItIsAllowed) {
    const std::string report = asOrdinaryUser([this] {
        expectWarnings(kStatementFailed, 2);
        daoWithTables().addMeasureForm(measurement(1));
        fs::permissions(path_, fs::perms::owner_read);
        ServiceDao dao(folder_);
        dao.addMeasureForm(measurement(2));
        const std::string before = told(dao);
        fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_write);
        dao.execSql("no sql");
        return before + told(dao);
    });
    EXPECT_EQ(report, "1\n" + statement_ + "1\n" + statement_);
}

}  // namespace
}  // namespace kestrix::storage
