#pragma once

#include <string>

#include "apps/kestrix-cli/Ending.h"
#include "platform/DocumentsFolder.h"
#include "platform/UserDefaults.h"
#include "storage/FolderReadings.h"

namespace kestrix::cli {

// A folder that readings are recorded in, by the window's rules: made-up ones do not come among real ones,
// and what is another program's is left as it is. A window may have it open meanwhile.
class LogFolder {
  public:
    // documents: the folder; empty: the standard one of such readings.
    LogFolder(const std::string& documents, storage::Readings readings);
    LogFolder(const LogFolder&) = delete;
    LogFolder& operator=(const LogFolder&) = delete;

    // Makes folder, database and tables where they are missing. Anything but kDone is how the command ends;
    // then nothing was made.
    Ending open();

    // For connections, which ask again whether the folder may be used. Refers to this object.
    const platform::DocumentsFolder& folder() const { return folder_; }

  private:
    // Why such readings may not come into the folder as it is now.
    Ending look();

    storage::Readings readings_;
    storage::DatabaseLook look_;
    platform::DocumentsFolder folder_;
    platform::UserDefaults defaults_;
};

}  // namespace kestrix::cli
