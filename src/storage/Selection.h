#pragma once

#include <cstdint>

// What one screen must know of another; one of each in an application.
namespace kestrix::storage {

inline std::int64_t selectedRecordId = 0;  // the test record; 0: none yet
inline std::int64_t selectedDataId = 0;    // the measurement; 0: none yet

// Of the measurements that are not saved yet, those up to this identity were recorded before the application
// was started; set then by the composition root.
inline std::int64_t lastDataIdOfEarlierSessions = 0;

}  // namespace kestrix::storage
