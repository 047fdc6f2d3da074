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

// Writes the record to a file of the folder that is not there yet, whose name is the moment, and tells its
// path. Of several in one second none replaces another: "20260304050607.pdf", "20260304050607-2.pdf".
Ending exportToFolder(Runner& runner, const history::ExportedRecord& record,
                      const history::ExportFormat& format, const platform::DocumentsFolder& folder);

}  // namespace kestrix::cli
