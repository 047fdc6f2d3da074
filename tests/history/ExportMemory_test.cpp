// What grows with the record does not grow in memory.
#include <gtest/gtest.h>

#include "tests/history/Exported.h"
#include "tests/support/ProcessState.h"

namespace kestrix::history {
namespace {

// In bytes, the most that is on the heap while so many measurements are written, from a source that keeps
// none into a sink that keeps none.
std::size_t mostMemoryFor(const ExportFormat& format, int count) {
    const storage::MeasureData measure = measureWith("199.9MΩ,528V 50%%");
    const MeasureSource source = [&](const MeasureVisitor& visit) {
        for (int i = 0; i < count && visit(measure); ++i) {
        }
        return storage::Outcome{};
    };
    const std::size_t before = testing::allocatedBytes();
    std::size_t most = 0;
    std::size_t bytes = 0;
    const storage::Outcome outcome =
        format.write({std::nullopt, source, kStamp}, [&](std::string_view piece) {
            bytes += piece.size();
            most = std::max(most, testing::allocatedBytes() - before);
            return storage::Outcome{};
        });
    EXPECT_TRUE(outcome.done);
    EXPECT_GT(bytes, static_cast<std::size_t>(count) * 50);
    return most;
}

TEST(ExportMemory, AMillionLinesOfTextNeedNoMoreMemoryThanAFew) {
    const std::size_t few = mostMemoryFor(kTextFormat, 10'000);
    EXPECT_GT(few, 32U * 1024) << "what is measured is not nothing";
    EXPECT_LE(mostMemoryFor(kTextFormat, 1'000'000), few + 16 * 1024);
}

TEST(ExportMemory, ManyRowsOfCsvNeedNoMoreMemoryThanAFew) {
    EXPECT_LE(mostMemoryFor(kCsvFormat, 100'000), mostMemoryFor(kCsvFormat, 10'000) + 16 * 1024);
}

TEST(ExportMemory, ManyMeasurementsInJsonNeedNoMoreMemoryThanAFew) {
    EXPECT_LE(mostMemoryFor(kJsonFormat, 100'000), mostMemoryFor(kJsonFormat, 10'000) + 16 * 1024);
}

}  // namespace
}  // namespace kestrix::history
