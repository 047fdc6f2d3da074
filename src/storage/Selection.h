#pragma once

#include <cstdint>

// What was chosen in one screen and is shown by the next; one of each in an application.
namespace kestrix::storage {

inline std::int64_t selectedRecordId = 0;  // the test record; 0: none yet
inline std::int64_t selectedDataId = 0;    // the measurement; 0: none yet

}  // namespace kestrix::storage
