#pragma once

#include <cstdint>
#include <string>

namespace kestrix::storage {

// A UUID of version 7 (RFC 9562): the moment, and 74 random bits. utc: milliseconds since 1970 began.
std::string newMeasurementIdentity(std::int64_t utc);

}  // namespace kestrix::storage
