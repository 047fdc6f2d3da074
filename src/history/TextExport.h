#pragma once

#include "history/ExportedRecord.h"

namespace kestrix::history {

// The text file, called CSV by the user: a title line and the record's line where there is a record, the
// title line of the measurements, and a line for each of them (history/ExportLines.h), each through the
// pattern pass (history/PatternPass.h) and ending in a line feed. UTF-16 in the machine's byte order, with
// its byte-order mark; bytes that are no UTF-8 become U+FFFD. The memory that it takes depends on the longest
// line, not on their number.
storage::Outcome writeText(const ExportedRecord& record, const ExportSink& sink);

}  // namespace kestrix::history
