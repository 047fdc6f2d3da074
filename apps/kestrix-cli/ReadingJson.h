#pragma once

#include <string>

#include "protocol/MeterReading.h"

namespace kestrix::cli {

// Appends one reading to `out` as one compact JSON object, without a newline. What `out` holds stays.
//
// The object has every field of MeterReading under its own name, in declaration order; a ValData is a nested
// object of its seven fields. bRecord is true or false, flags and settings are whole numbers. A double is the
// shortest text that reads back as the same double: whole numbers have neither a point nor an exponent, minus
// zero is -0.0, and what is not finite is null. Texts are UTF-8 and keep their characters; only quotes,
// backslashes and control characters are escaped. Texts must be valid UTF-8: their bytes are not checked.
void appendReadingJson(std::string& out, const protocol::MeterReading& reading);

}  // namespace kestrix::cli
