#pragma once

#include "history/ExportedRecord.h"

namespace kestrix::history {

// One JSON object: the record's fields, and under "measurements" an array of objects, a line each, all under
// the names of the columns. Without a record there is only the array. Times are ISO 8601; bytes that are no
// UTF-8 become U+FFFD. Each measurement has its evidence, or null where it has none: its identity, its place
// in the chain, and in hexadecimal digits the frames that it was read from and the hash.
storage::Outcome writeJson(const ExportedRecord& record, const ExportSink& sink);

}  // namespace kestrix::history
