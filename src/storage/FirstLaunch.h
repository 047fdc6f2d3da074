#pragma once

#include <chrono>
#include <memory>

#include "platform/DocumentsFolder.h"
#include "platform/UserDefaults.h"
#include "storage/ServiceDao.h"

namespace kestrix::storage {

inline constexpr const char* kFirstOrvo = "firstOrvo";
// True from before the first attempt to make the tables until they are there.
inline constexpr const char* kTablesMissing = "tablesMissing";

// The folder that both of them speak of: settings may serve several folders, one after the other.
inline constexpr const char* kTablesIn = "tablesIn";

// On the first launch in this folder (the default "firstOrvo" is not set for it) sets it, makes the tables,
// and gives the connection that did; on a later launch gives none and makes no tables, even when the file has
// been deleted since; a file that is there gets the indexes that it lacks. A launch that could not make them,
// or was killed before it had, does not count: the next one tries again. patience: the connection's.
std::unique_ptr<ServiceDao> createTablesOnFirstLaunch(platform::UserDefaults& defaults,
                                                      const platform::DocumentsFolder& folder,
                                                      std::chrono::milliseconds patience);

}  // namespace kestrix::storage
