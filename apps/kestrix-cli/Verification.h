#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kestrix::cli {

// What a database's evidence says of its measurements.
struct Verification {
    struct Finding {
        std::int64_t dataId = 0;  // of the measurement; 0: it is about the chain
        std::int64_t place = 0;   // in the chain; 0: it has none there
        std::string text;         // one line, without a full stop
    };

    std::string problem{};  // why nothing could be read, in one line; the rest is empty then
    std::int64_t measurements = 0;
    std::int64_t derived = 0;    // whose texts were derived again from their frames, and are the same
    std::int64_t older = 0;      // of before this database kept evidence
    std::int64_t simulated = 0;  // as their evidence says
    std::int64_t replayed = 0;
    bool chainWhole = true;
    std::string head{};               // the hash of the chain's last row, 64 digits; empty without one
    std::vector<Finding> findings{};  // in the order of the chain, then of the measurements

    bool isClean() const { return problem.empty() && findings.empty(); }
};

// In which pieces the database is read. Between two of them whoever wants to write to it can.
struct VerificationSlices {
    int rows = 10'000;  // at most in one of them
    std::function<void()> between{};
};

// Opens the file for reading only, and changes nothing in it: neither does it undo what a killed process left
// half done, which it says. What others record, file, delete and put back meanwhile is no difference; the
// result is that of the moment of its end.
Verification verifyDatabase(const std::string& path, const VerificationSlices& slices = {});

}  // namespace kestrix::cli
