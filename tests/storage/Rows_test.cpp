#include "storage/Rows.h"

#include <gtest/gtest.h>

#include "tests/storage/StorageFixture.h"

namespace kestrix::storage {
namespace {

// Rows that somebody else wrote.
class Rows : public QuickStorageFixture {
  protected:
    ServiceDao dao_ = daoWithTables();
    Connection other_{path_};
};

TEST_F(Rows, EveryColumnOfAMeasurementHasItsField) {
    other_.run("INSERT INTO measurefrom VALUES (11, 12, 'c2', 'c3', 'c4', 'c5', 'c6', 'c7', 'c8')");
    EXPECT_EQ(dao_.findMeasureForm(true),
              (std::vector<MeasureData>{{11, 12, "c2", "c3", "c4", "c5", "c6", "c7", "c8"}}));
}

TEST_F(Rows, EveryColumnOfARecordHasItsField) {
    other_.run("INSERT INTO recordfrom VALUES (11, 'c1', 'c2', 'c3', 'c4', 'c5', 'c6', 12, 'c8', 'c9')");
    EXPECT_EQ(dao_.findRecordForm(),
              (std::vector<RecordData>{{11, "c9", "c1", "c2", "c3", "c4", "c5", "c6", 12, "c8"}}));
}

TEST_F(Rows, NullIsZeroOrTheEmptyText) {
    other_.run("INSERT INTO measurefrom (dataId) VALUES (1)");
    other_.run("INSERT INTO recordfrom (dataId) VALUES (1)");
    MeasureData measure;
    measure.dataId = 1;
    RecordData record;
    record.recordId = 1;
    EXPECT_EQ(dao_.findMeasureForm(true), std::vector{measure});
    EXPECT_EQ(dao_.findRecordForm(), std::vector{record});
}

TEST_F(Rows, ColumnsThatAreMissingAreEmpty) {
    other_.run("DROP TABLE recordfrom; CREATE TABLE recordfrom (dataId INTEGER PRIMARY KEY, company)");
    other_.run("INSERT INTO recordfrom VALUES (3, 'Volt')");
    RecordData record;
    record.recordId = 3;
    record.company = "Volt";
    EXPECT_EQ(dao_.findRecordForm(), std::vector{record});
}

TEST_F(Rows, IdsAreReadInSixtyFourBits) {
    other_.run("INSERT INTO measurefrom (dataId, recordId) VALUES (9000000000, -9000000001)");
    const auto found = dao_.findMeasureForm(true);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].dataId, 9000000000);
    EXPECT_EQ(found[0].recordId, -9000000001);
}

TEST_F(Rows, NumbersWhereTextsShouldBeAreReadAsTexts) {
    other_.run("DROP TABLE recordfrom; CREATE TABLE recordfrom (dataId INTEGER PRIMARY KEY, company)");
    other_.run("INSERT INTO recordfrom VALUES (1, 12.5)");
    EXPECT_EQ(dao_.findRecordForm().at(0).company, "12.5");
}

}  // namespace
}  // namespace kestrix::storage
