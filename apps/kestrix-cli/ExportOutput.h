#pragma once

#include <string>

#include "apps/kestrix-cli/Ending.h"
#include "history/Export.h"

namespace kestrix::cli {

class Runner;

// Writes the record to a file that is not there yet, or to standard output, by the name "-", which is given
// all of it or, when something fails before, nothing.
Ending exportToOutput(Runner& runner, const history::ExportedRecord& record,
                      const history::ExportFormat& format, const std::string& output);

}  // namespace kestrix::cli
