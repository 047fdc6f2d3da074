#pragma once

#include "storage/Evidence.h"

namespace kestrix::storage {

// Of the machine's clocks.
Moment momentNow();

// This program, as evidence names it: "kestrix 0.1.0".
const char* programName();

}  // namespace kestrix::storage
