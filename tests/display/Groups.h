#pragma once

#include <cstdint>

namespace kestrix::display {

// What the groups of the display hide and show, as shownParts() tells it.
struct GroupParts {
    std::int32_t group;
    const char* hidden;  // what is left of all after the group was hidden
    const char* shown;   // what there is of nothing after the group was shown
};

inline constexpr GroupParts kGroupParts[] = {
    {1, "rows1-4 rows5-6 values1-6", "D1 D2"}, {2, "rows1-4 rows5-6 values1-6", "D1"},
    {3, "D1 D2 rows5-6 values1-6", "rows1-4"}, {4, "D1 D2 rows1-4 values1-6", "rows5-6"},
    {5, "D1 D2 rows1-4 rows5-6", "values1-6"},
};

}  // namespace kestrix::display
