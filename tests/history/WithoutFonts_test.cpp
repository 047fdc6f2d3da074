// In a program without a window system, which draws nothing.
#include <gtest/gtest.h>

#include "history/PdfReport.h"
#include "tests/history/Exported.h"

namespace kestrix::history {
namespace {

TEST(PdfReportWithoutFonts, IsAFailureWithItsReason) {
    const auto all = measurements(1);
    const storage::Outcome outcome = writePdf(exportOf(all), [](std::string_view) {
        ADD_FAILURE() << "nothing is written";
        return storage::Outcome{};
    });
    EXPECT_EQ(outcome, (storage::Outcome{false, "this program has no fonts", 0}));
}

}  // namespace
}  // namespace kestrix::history
