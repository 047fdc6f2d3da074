// Whatever a file holds, its information as a report is one of both: a line that says why not, or a mark that
// writes itself the same.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "history/ReportInformation.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto require = [](bool holds) {
        if (!holds) std::abort();
    };
    const kestrix::history::ReportInformation information = kestrix::history::reportInformation(bytes);
    if (information.problem.empty()) {
        require(kestrix::storage::recordMarkIn(textOf(information.mark)) == information.mark);
    } else {
        require(information.mark == kestrix::storage::RecordMark{});
        require(std::count(information.problem.begin(), information.problem.end(), '\n') == 0);
    }
    // The text alone, which few changed files would reach.
    if (const auto mark = kestrix::storage::recordMarkIn(bytes))
        require(kestrix::storage::recordMarkIn(textOf(*mark)) == *mark);
    return 0;
}
