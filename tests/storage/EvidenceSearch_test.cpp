// Finding how a measurement was recorded.
#include "storage/EvidenceSearch.h"

#include "storage/TestRecords.h"
#include "tests/storage/EvidenceFixture.h"

namespace kestrix::storage {
namespace {

class EvidenceSearchTest : public EvidenceFixture {
  protected:
    // 1 to 9, of which 4 to 6 have been filed between the others; 1 is of before there was evidence.
    EvidenceSearchTest() {
        dao_.addMeasureForm(measurement(1));
        for (int i = 2; i <= 6; ++i) record(i);
        std::vector<MeasureData> some;
        for (int i = 4; i <= 6; ++i) some.push_back(dao_.findMeasureofDataId(i).at(0));
        EXPECT_TRUE(fileMeasurements(dao_, testRecord(), some).done);
        for (int i = 7; i <= 9; ++i) record(i);
    }
    // Of the measurement, or 0.
    std::int64_t placeOf(std::int64_t dataId) {
        const std::optional<EvidenceRow> found = dao_.findRecorded(dataId);
        EXPECT_TRUE(dao_.lastOutcome().done) << dao_.lastOutcome().reason;
        if (!found) return 0;
        EXPECT_EQ(found->dataId, dataId);
        EXPECT_EQ(found->event, EvidenceEvent::Recorded);
        EXPECT_EQ(found->hash, hashOf(*found));
        return found->place;
    }
    static constexpr std::int64_t kPlaces[] = {0, 0, 1, 2, 3, 4, 5, 9, 10, 11, 0};
};

TEST_F(EvidenceSearchTest, FindsEachAscending) {
    for (std::int64_t i = 0; i <= 10; ++i) EXPECT_EQ(placeOf(i), kPlaces[i]) << i;
}

TEST_F(EvidenceSearchTest, FindsEachDescending) {
    for (std::int64_t i = 10; i >= 0; --i) EXPECT_EQ(placeOf(i), kPlaces[i]) << i;
}

TEST_F(EvidenceSearchTest, FindsEachByItself) {
    for (std::int64_t i = 0; i <= 10; ++i) {
        dao_ = daoWithTables();
        EXPECT_EQ(placeOf(i), kPlaces[i]) << i;
    }
}

TEST_F(EvidenceSearchTest, FindsTheOthersWhereSomeWereTakenAway) {
    Connection(path_).run("DELETE FROM evidence WHERE place IN (1, 5, 9)");
    for (const int i : {3, 4, 5, 8, 9}) EXPECT_EQ(placeOf(i), kPlaces[i]) << i;
    for (const int i : {2, 6, 7}) EXPECT_EQ(placeOf(i), 0) << i;
}

TEST_F(EvidenceSearchTest, FindsOneAtTheLastPlaceThatThereIs) {
    Connection(path_).run("UPDATE evidence SET place = 9223372036854775807 WHERE place = 11");
    EXPECT_EQ(dao_.findRecorded(9)->place, std::numeric_limits<std::int64_t>::max());
    EXPECT_FALSE(dao_.findRecorded(10).has_value());
    EXPECT_EQ(dao_.findRecorded(8)->place, 10);
}

TEST_F(EvidenceSearchTest, GivesOneThatHoldsWhatNoSuchRowCanNoHash) {
    Connection(path_).run("UPDATE evidence SET source = x'37' WHERE place = 3");
    EXPECT_EQ(dao_.findRecorded(4)->hash, Sha256{});
}

TEST_F(EvidenceSearchTest, WithoutTheTableFindsNone) {
    Connection(path_).run("DROP TABLE evidence");
    for (std::int64_t i = 0; i <= 10; ++i) EXPECT_EQ(placeOf(i), 0) << i;
    EXPECT_EQ(dao_.findChainHead().place, 0);
}

// Steps of the engine's own machine, which no other program makes more.
TEST_F(EvidenceSearchTest, GoesOnceAcrossManyEventsThatRecordedNothing) {
    for (const bool recordedBehind : {false, true}) {
        SCOPED_TRACE(recordedBehind);
        dao_.execSql(
            "INSERT INTO evidence (event, dataId) WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
            "i < "
            "20000) SELECT 'put back', 1 FROM n");
        if (recordedBehind) record(10);
        sqlite3* opened = nullptr;
        ASSERT_EQ(sqlite3_open_v2(path_.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
        int hundreds = 0;
        const auto count = [](void* to) {
            ++*static_cast<int*>(to);
            return 0;
        };
        sqlite3_progress_handler(opened, 100, count, &hundreds);
        {
            EvidenceSearch search(opened);
            std::optional<EvidenceRow> found;
            // 11 and on were recorded by a version that keeps none.
            for (std::int64_t i = 1; i <= 300; ++i) EXPECT_TRUE(search.find(i % 2 == 0 ? i : 300 + i, found));
        }
        EXPECT_LT(hundreds, 20'000) << "some fifteen times across";
        sqlite3_close(opened);
    }
}

TEST_F(EvidenceSearchTest, FindsWhatIsRecordedBehindAnEndThatItKnew) {
    EXPECT_EQ(placeOf(10), 0);
    record(10);
    EXPECT_EQ(placeOf(10), 12);
    EXPECT_EQ(placeOf(10), 12);
}

TEST_F(EvidenceSearchTest, KnowsTheHeadOfTheChain) {
    EXPECT_EQ(dao_.findChainHead().place, 11);
    EXPECT_EQ(dao_.findChainHead().hash, chain().back().hash);
}

TEST_F(EvidenceSearchTest, SaysWhatCannotBeRead) {
    Connection(path_).run("DROP TABLE evidence; CREATE VIEW evidence AS SELECT * FROM nowhere");
    EXPECT_FALSE(dao_.findRecorded(4).has_value());
    EXPECT_TRUE(dao_.lastOutcome().done) << "a view is no table";
    Connection(path_).run("DROP VIEW evidence; CREATE TABLE evidence (place INTEGER)");
    dao_.findRecorded(4);
    EXPECT_FALSE(dao_.lastOutcome().done);
}

}  // namespace
}  // namespace kestrix::storage
