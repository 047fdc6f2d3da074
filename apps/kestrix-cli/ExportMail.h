#pragma once

#include "apps/kestrix-cli/Ending.h"
#include "apps/kestrix-cli/ExportOptions.h"
#include "history/Export.h"
#include "platform/DocumentsFolder.h"

namespace kestrix::cli {

class EventLoop;
class Runner;

// Mails the record, or keeps the mail as a draft in the folder. It ends with the server's answer, a signal or
// the time limit.
Ending mailExport(Runner& runner, EventLoop& loop, const ExportOptions& options,
                  const history::ExportedRecord& record, const platform::DocumentsFolder& folder);

}  // namespace kestrix::cli
