// The power goes off at any moment: what the disk holds then still holds every row whose insert has returned.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "storage/ServiceDao.h"
#include "storage/Transaction.h"
#include "tests/storage/StorageFixture.h"
#include "tests/support/FailingVfs.h"

namespace kestrix::storage {
namespace {

namespace fs = std::filesystem;
using testing::FailingVfs;
using Call = FailingVfs::Call;

using Files = std::map<std::string, std::string>;  // path: content

std::string contentOf(const std::string& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

// Half of the sectors have reached the disk, and perhaps the new size.
std::string torn(const std::string& onDisk, const std::string& written, std::mt19937& random) {
    constexpr std::size_t kSector = 512;
    std::string left = onDisk;
    left.resize(random() % 2 == 0 ? onDisk.size() : written.size());
    const std::size_t both = std::min(left.size(), written.size());
    for (std::size_t at = 0; at < both; at += kSector) {
        const std::size_t length = std::min(kSector, both - at);
        if (random() % 2 == 0) left.replace(at, length, written, at, length);
    }
    return left;
}

// What is on the disk for sure, and what is in the files: a power cut leaves each file as one or the other,
// or something between.
class Disk {
  public:
    void take(const FailingVfs::Event& event) {
        if (event.call == Call::Sync) onDisk_[event.path] = contentOf(event.path);
        if (event.call == Call::Delete && event.folderSynced) onDisk_.erase(event.path);
    }

    // chance: how many of 4 files have reached the disk although nobody waited for it.
    Files afterPowerCut(const std::string& database, unsigned chance, std::mt19937& random) const {
        Files left;
        for (const std::string& path : {database, database + "-journal"}) {
            const bool reached = random() % 4 < chance;
            if (reached && fs::exists(path)) left[path] = contentOf(path);
            if (const auto found = onDisk_.find(path); !reached && found != onDisk_.end())
                left.insert(*found);
        }
        return left;
    }

    Files tornByPowerCut(const std::string& database, std::mt19937& random) const {
        Files left = onDisk_;
        for (const std::string& path : {database, database + "-journal"}) {
            if (fs::exists(path) && onDisk_.contains(path))
                left[path] = torn(onDisk_.at(path), contentOf(path), random);
        }
        return left;
    }

  private:
    Files onDisk_;
};

struct PowerCut {
    Files files;
    int acknowledged;
};

class Durability : public StorageFixture {
  protected:
    using Insert = void (*)(ServiceDao& dao, const MeasureData& measure);
    // Every moment of some inserts.
    std::vector<PowerCut> momentsOfInserts(int count, Insert insert) {
        std::mt19937 random(3);  // NOLINT(cert-msc51-cpp)
        std::vector<PowerCut> moments;
        Disk disk;
        int acknowledged = 0;
        FailingVfs vfs;
        ServiceDao dao(folder_);
        const auto addMoments = [&] {
            for (const unsigned chance : {0U, 2U, 4U})
                moments.push_back({disk.afterPowerCut(path_, chance, random), acknowledged});
            moments.push_back({disk.tornByPowerCut(path_, random), acknowledged});
        };
        vfs.observe([&](const FailingVfs::Event& event) {
            if (event.call == Call::Read || event.call == Call::Open) return;
            addMoments();
            disk.take(event);
            addMoments();
        });
        dao.createTable();
        for (int i = 1; i <= count; ++i) {
            insert(dao, measurement(i));
            ++acknowledged;
            addMoments();
        }
        vfs.observe({});
        return moments;
    }
    // The database after the power is back.
    Connection restarted(const PowerCut& moment) const {
        fs::remove(path_);
        fs::remove(path_ + "-journal");
        for (const auto& [path, content] : moment.files) std::ofstream(path, std::ios::binary) << content;
        Connection file(path_);
        EXPECT_EQ(file.value("PRAGMA integrity_check"), "ok");
        return file;
    }
    // Every row whose insert had returned, and at most the one that was on its way.
    void expectKept(const std::vector<PowerCut>& moments) const {
        FailingVfs quick;
        quick.skipSyncs();
        for (const PowerCut& moment : moments) {
            Connection file = restarted(moment);
            if (moment.acknowledged == 0) continue;  // perhaps no table yet
            const auto names = file.rows("SELECT dataName FROM measurefrom ORDER BY dataId");
            ASSERT_GE(names.size(), static_cast<std::size_t>(moment.acknowledged));
            ASSERT_LE(names.size(), static_cast<std::size_t>(moment.acknowledged) + 1);
            for (std::size_t i = 0; i < names.size(); ++i)
                ASSERT_EQ(names[i].front(), "S_" + std::to_string(i + 1));
        }
    }
};

TEST_F(Durability, APowerCutAtAnyMomentKeepsEveryRowWhoseInsertHasReturned) {
    const std::vector<PowerCut> moments =
        momentsOfInserts(8, [](ServiceDao& dao, const MeasureData& measure) { dao.addMeasureForm(measure); });
    EXPECT_GT(moments.size(), 300U);
    expectKept(moments);
}

TEST_F(Durability, APowerCutAtAnyMomentLeavesNoMeasurementWithoutItsEvidenceNorTheOtherWayRound) {
    const std::vector<PowerCut> moments =
        momentsOfInserts(8, [](ServiceDao& dao, const MeasureData& measure) {
            dao.addMeasureWithEvidence(measure, {.frame = std::string(36, 'f')});
        });
    EXPECT_GT(moments.size(), 300U);
    FailingVfs quick;
    quick.skipSyncs();
    for (const PowerCut& moment : moments) {
        Connection file = restarted(moment);
        if (moment.acknowledged == 0) continue;  // perhaps no table yet
        const std::string measured = file.value("SELECT group_concat(dataId) FROM measurefrom");
        ASSERT_EQ(file.value("SELECT group_concat(dataId) FROM evidence"), measured);
        ASSERT_GE(file.rows("SELECT * FROM measurefrom").size(),
                  static_cast<std::size_t>(moment.acknowledged));
    }
}

// What a large one leaves behind the end of the next journal is not rolled back.
TEST_F(Durability, APowerCutAtAnyMomentOfLargeAndSmallStatementsByTurnsLosesNoRow) {
    const std::vector<PowerCut> moments = momentsOfInserts(5, [](ServiceDao& dao,
                                                                 const MeasureData& measure) {
        dao.addMeasureForm(measure);
        dao.execSql("PRAGMA cache_size = 3");  // a large one writes before its end, and heads more than once
        dao.execSql("UPDATE measurefrom SET comments = hex(zeroblob(2000 * (1 + dataId % 3)))");
    });
    EXPECT_GT(moments.size(), 400U);
    expectKept(moments);
}

// What is still on its way to the disk when an operation returns.
TEST_F(Durability, NothingIsOnItsWayWhenAnOperationReturns) {
    std::map<std::string, bool> pending;
    FailingVfs vfs;
    ServiceDao dao(folder_);
    vfs.observe([&](const FailingVfs::Event& event) {
        if (event.call == Call::Write || event.call == Call::Truncate) pending[event.path] = true;
        if (event.call == Call::Sync) pending[event.path] = false;
        if (event.call == Call::Delete) pending[event.path] = !event.folderSynced;
    });
    const auto expectAllOnDisk = [&pending](const char* operation) {
        EXPECT_EQ(pending.size(), 2U) << operation;
        for (const auto& [path, waits] : pending) EXPECT_FALSE(waits) << operation << ": " << path;
        pending.clear();
    };
    dao.createTable();
    expectAllOnDisk("createTable");
    dao.addMeasureForm(measurement(1));
    expectAllOnDisk("addMeasureForm");
    dao.addMeasureWithEvidence(measurement(2), {});
    expectAllOnDisk("addMeasureWithEvidence");
    dao.addRecordForm(testRecord());
    expectAllOnDisk("addRecordForm");
    dao.updateMeasureForm("House", 1, 1);
    expectAllOnDisk("updateMeasureForm");
    dao.execSql("UPDATE recordfrom SET samples = 9");
    expectAllOnDisk("execSql");
    ServiceDao(folder_).DeleteMeasureFormData(1);
    expectAllOnDisk("DeleteMeasureFormData");
    ServiceDao(folder_).DeleteRecordFormData(1);
    expectAllOnDisk("DeleteRecordFormData");
    vfs.observe({});
}

// It need not grow anew for the next press, and keeps little of the disk.
TEST_F(Durability, TheJournalStaysAndStaysSmall) {
    constexpr std::uintmax_t kMost = 65536;
    const auto journal = [this] { return fs::file_size(path_ + "-journal"); };
    ServiceDao dao(folder_);
    dao.createTable();
    dao.addMeasureForm(measurement(1));
    const std::uintmax_t ofOnePress = journal();
    EXPECT_GT(ofOnePress, 0U);
    dao.addMeasureForm(measurement(2));
    EXPECT_EQ(journal(), ofOnePress);
    dao.execSql(
        "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200) "
        "INSERT INTO measurefrom (result, comments) SELECT 'large', zeroblob(2000) FROM n");
    std::uintmax_t most = 0;
    FailingVfs vfs;
    ServiceDao another(folder_);
    vfs.observe([&](const FailingVfs::Event& event) {
        if (event.call == Call::Write) most = std::max(most, journal());
    });
    another.execSql("UPDATE measurefrom SET result = 'small'");
    vfs.observe({});
    EXPECT_GT(most, kMost);
    EXPECT_EQ(journal(), kMost);
}

TEST_F(Durability, OfWhatWasDeletedNothingStaysInTheJournal) {
    const auto isKept = [this](const char* text) {
        return contentOf(path_).find(text) != std::string::npos ||
               contentOf(path_ + "-journal").find(text) != std::string::npos;
    };
    ServiceDao dao(folder_);
    dao.createTable();
    RecordData record = testRecord();
    record.addres = "12 Example Street";
    dao.addRecordForm(record);
    MeasureData measure = measurement(1);
    measure.comments = "behind the boiler";
    dao.addMeasureForm(measure);
    dao.addMeasureForm(measurement(2));
    ASSERT_TRUE(isKept("12 Example Street"));
    {
        Transaction deleting(dao);
        dao.DeleteRecordFormData(1);
        dao.DeleteMeasureFormData(1);
        EXPECT_TRUE(deleting.commit());
    }
    EXPECT_FALSE(isKept("12 Example Street"));
    EXPECT_FALSE(isKept("behind the boiler"));
    EXPECT_EQ(fs::file_size(path_ + "-journal"), 0U);
    dao.addMeasureForm(measure);
    const std::int64_t again = dao.lastOutcome().identity;
    EXPECT_GT(fs::file_size(path_ + "-journal"), 0U);
    dao.addMeasureForm(measurement(3));
    dao.DeleteMeasureFormData(again);
    EXPECT_FALSE(isKept("behind the boiler"));
}

TEST_F(Durability, AnotherProgramsJournalLastsForOneStatement) {
    const auto mode = [this] { return Connection(path_).value("PRAGMA journal_mode"); };
    ServiceDao dao(folder_);
    dao.createTable();
    dao.addMeasureForm(measurement(1));
    Connection(path_).run("PRAGMA journal_mode = WAL");
    dao.addMeasureForm(measurement(2));
    dao.addMeasureForm(measurement(3));
    EXPECT_EQ(mode(), "delete");  // of a connection that asks for none: no log
    EXPECT_EQ(dao.findMeasureForm(true).size(), 3U);
}

}  // namespace
}  // namespace kestrix::storage
