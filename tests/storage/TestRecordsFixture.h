#pragma once

#include <string>
#include <vector>

#include "storage/TestRecords.h"
#include "tests/storage/StorageFixture.h"

namespace kestrix::storage {

// A database with measurements that are not saved yet.
class TestRecordsFixture : public QuickStorageFixture {
  protected:
    ServiceDao dao_ = daoWithTables();

    std::vector<MeasureData> record(int measurements) {
        for (int number = 1; number <= measurements; ++number) dao_.addMeasureForm(measurement(number));
        return dao_.findMeasureForm(false);
    }
    // All that the database holds, as another connection sees it.
    std::vector<std::vector<std::string>> everything() const {
        Connection other(path_);
        auto rows = other.rows("SELECT * FROM recordfrom");
        for (auto& row : other.rows("SELECT * FROM measurefrom")) rows.push_back(row);
        return rows;
    }
};

}  // namespace kestrix::storage
