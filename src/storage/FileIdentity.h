#pragma once

#include <cstdint>
#include <utility>

#include "platform/DocumentsFolder.h"

namespace kestrix::storage {

// Device and number of the database's file; zeros: there is none. Another file in its place has another one.
using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;

FileIdentity databaseIdentity(const platform::DocumentsFolder& folder);

}  // namespace kestrix::storage
