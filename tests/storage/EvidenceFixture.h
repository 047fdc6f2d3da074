#pragma once

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <string>
#include <vector>

#include "storage/EvidenceChain.h"
#include "storage/EvidenceHash.h"
#include "tests/storage/StorageFixture.h"

namespace kestrix::storage {

// Measurements with evidence, a millisecond apart.
class EvidenceFixture : public QuickStorageFixture {
  protected:
    EvidenceFixture() {
        dao_.setClock([this] { return Moment{++clock_, 3600, 5000 + clock_}; });
    }
    static Evidence evidence(int number) {
        Evidence made;
        made.frame = std::string(36, static_cast<char>('0' + number));
        made.tripTimeFrames[2] = std::string(36, 'r');
        made.equalFrames = 4;
        made.source = "bluetooth";
        made.accessory = "Tester 7";
        return made;
    }
    std::int64_t record(int number) {
        dao_.addMeasureWithEvidence(measurement(number), evidence(number));
        EXPECT_TRUE(dao_.lastOutcome().done) << dao_.lastOutcome().reason;
        return dao_.lastOutcome().identity;
    }
    // Each row is readable, in its place, and follows the one before.
    std::vector<EvidenceRow> chain() {
        std::vector<EvidenceRow> rows;
        sqlite3* opened = nullptr;
        EXPECT_EQ(sqlite3_open_v2(path_.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
        Sha256 previous{};
        EXPECT_TRUE(eachEvidence(opened, 0, [&](const EvidenceRow& row, bool readable) {
            EXPECT_TRUE(readable);
            EXPECT_EQ(row.place, static_cast<std::int64_t>(rows.size()) + 1);
            EXPECT_EQ(row.previous, previous);
            EXPECT_EQ(row.hash, hashOf(row));
            previous = row.hash;
            rows.push_back(row);
            return true;
        }));
        sqlite3_close(opened);
        return rows;
    }
    std::string count(const char* table) const {
        return Connection(path_).value(std::string("SELECT count(*) FROM ") + table);
    }

    ServiceDao dao_ = daoWithTables();
    std::int64_t clock_ = 1'772'600'767'000;
};

}  // namespace kestrix::storage
