#pragma once

#include <QString>

#include <functional>
#include <string>

#include "history/ExportedRecord.h"
#include "platform/DocumentsFolder.h"

// Files that a record is exported into: for their owner alone, written straight and not atomically. What
// fails on the way (a full disk, say) leaves no half file where it can be removed. The reason is one line;
// what `write` answers counts as well.
namespace kestrix::history {

using FileContent = std::function<storage::Outcome(const ExportSink&)>;

// A file of the documents folder, unless the folder's guard keeps it out. One of this name is replaced; what
// is no file of its own (a link, a device, a file that has another name as well) is refused and left as it
// is, so that nothing outside the folder is written. name: without a folder.
storage::Outcome writeFileInFolder(const platform::DocumentsFolder& folder, const std::string& name,
                                   const FileContent& write);

// A file where there is none yet. Whatever has that path is left as it is.
storage::Outcome writeNewFile(const QString& path, const FileContent& write);

}  // namespace kestrix::history
