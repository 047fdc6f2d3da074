#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_set>
#include <vector>

#include "apps/kestrix-cli/MeasurementState.h"
#include "apps/kestrix-cli/Verification.h"
#include "storage/MeasureData.h"

struct sqlite3_stmt;

namespace kestrix::cli {

// A row of measurefrom as it stands there.
struct MeasurementRow {
    storage::MeasureData data;
    bool isOfKind = true;  // its columns hold what the application writes: numbers, and texts

    // From the row that a SELECT * stands on.
    void read(sqlite3_stmt* statement);
};

// Holds the rows of the measurements against what the chain says of them.
class MeasurementCheck {
  public:
    // Of a row. older: that it has no evidence is as it should be.
    void check(const MeasurementRow& row, const MeasurementState& state, bool older);
    // Derives once more what a row says, from the frames of the event that recorded it.
    void derive(const MeasurementRow& row, const storage::Evidence& evidence, MeasurementState& state);
    // What check() found of these is not so any more.
    void forget(const std::unordered_set<std::int64_t>& dataIds);
    // Adds what was found.
    void tell(std::vector<Verification::Finding>& findings) const;

  private:
    struct Otherwise {
        std::int64_t place;
        std::string name;
        std::string differences;
    };
    struct Altered {
        std::int64_t dataId;
        std::int64_t place;
        storage::Sha256 now;
        storage::Sha256 should;
        std::string name;
    };

    // What the frames say otherwise, by dataId: one line each.
    std::map<std::int64_t, Otherwise> derived_;
    std::vector<Verification::Finding> checked_;
    std::vector<Altered> altered_;
};

}  // namespace kestrix::cli
