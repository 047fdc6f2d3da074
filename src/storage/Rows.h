#pragma once

#include "storage/MeasureData.h"
#include "storage/RecordData.h"

struct sqlite3_stmt;

namespace kestrix::storage {

// The row that a SELECT * of the table stands on. NULL is 0 or the empty text.
void readRow(sqlite3_stmt* statement, MeasureData& measure);
void readRow(sqlite3_stmt* statement, RecordData& record);

}  // namespace kestrix::storage
