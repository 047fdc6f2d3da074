#pragma once

#include <string>

#include "protocol/MeterReading.h"

namespace kestrix::protocol {

// The first field in which two records differ, with both its values ("ValData1.strValD1: expected ..., got
// ..."); empty when they are equal. Numbers are compared bit by bit, so 0.0 and -0.0 differ.
std::string firstDifference(const MeterReading& expected, const MeterReading& actual);

}  // namespace kestrix::protocol
