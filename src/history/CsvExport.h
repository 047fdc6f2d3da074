#pragma once

#include "history/ExportedRecord.h"

namespace kestrix::history {

// A table as RFC 4180 has it: UTF-8, lines ending in CR LF, a first row of the columns' names, and a row for
// each measurement, with the fields of its record in front. So spreadsheets open it as one table. A record
// without measurements has one row with nothing in their columns; measurements without a record have nothing
// in the record's. Times are ISO 8601. No value is altered to keep a spreadsheet from reading a formula in it
// ("=1+1"): what is read back is what was measured. Bytes that are no UTF-8 become U+FFFD.
storage::Outcome writeCsv(const ExportedRecord& record, const ExportSink& sink);

}  // namespace kestrix::history
