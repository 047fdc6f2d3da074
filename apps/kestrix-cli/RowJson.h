#pragma once

#include <string>

#include "storage/MeasureData.h"
#include "storage/RecordData.h"

namespace kestrix::cli {

// A row of the database as one JSON object and a line feed, under the names of the table's columns. Bytes
// that are no UTF-8 become U+FFFD.
std::string jsonLineOf(const storage::RecordData& record);
std::string jsonLineOf(const storage::MeasureData& measure);

}  // namespace kestrix::cli
