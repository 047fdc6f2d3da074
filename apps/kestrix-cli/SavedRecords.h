#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/Ending.h"
#include "storage/ServiceDao.h"

namespace kestrix::cli {

// Tells the option --documents.
void describeDocuments(CommandOptions& options, std::string& documents);

// The folder's database, for those that only read it or delete from it: no file and no folder is made.
class SavedRecords {
  public:
    // documents: the folder; empty: the user's.
    explicit SavedRecords(const std::string& documents);

    // Anything but kDone is how the command ends: the folder or its database cannot be used.
    Ending open();
    // None where there is no database yet, which holds no test record then.
    storage::ServiceDao* dao() { return dao_ ? &*dao_ : nullptr; }
    // How a command ends behind an operation of the database.
    Ending endingOf(const storage::Outcome& outcome) const;

    std::string path() const { return folder_.path().toStdString(); }
    const platform::DocumentsFolder& folder() const { return folder_; }

  private:
    platform::DocumentsFolder folder_;
    std::optional<storage::ServiceDao> dao_;
};

// The identity of a test record that was given as a word; none for anything else.
std::optional<std::int64_t> recordIdOf(const std::string& word);

// The end of a command says what the database answered; its log says it only to those who want to know all.
void leaveDatabaseLogOff();

// How a command ends that was given a word which is none, or one that no test record has.
Ending noSuchId(const std::string& word);
Ending noSuchRecord(const std::string& word, const SavedRecords& records);

}  // namespace kestrix::cli
