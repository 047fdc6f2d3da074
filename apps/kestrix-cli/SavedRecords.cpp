#include "apps/kestrix-cli/SavedRecords.h"

#include <QFileInfo>

#include <charconv>

#include "storage/DatabaseLook.h"
#include "storage/FolderChoice.h"
#include "storage/StorageLog.h"

namespace kestrix::cli {
namespace {

QString folderNamed(const std::string& documents) {
    return documents.empty() ? platform::DocumentsFolder::standardPath() : QString::fromStdString(documents);
}

}  // namespace

void describeDocuments(CommandOptions& options, std::string& documents) {
    options.text("--documents", "DIR", documents, "The folder of the database");
}

SavedRecords::SavedRecords(const std::string& documents) : folder_(folderNamed(documents)) {}

void leaveDatabaseLogOff() {
    if (!storage::lcStorage().isInfoEnabled())  // as with --verbose
        QLoggingCategory::setFilterRules(QStringLiteral("kestrix.storage.warning=false"));
}

Ending SavedRecords::open() {
    leaveDatabaseLogOff();
    const QFileInfo folder(folder_.path());
    if (folder.exists() && !folder.isDir()) return wrongUsage(path() + " is no folder");
    using Owner = storage::DatabaseLook::Owner;
    const storage::DatabaseLook look = storage::lookAtDatabase(folder_, storage::ServiceDao::kPatience);
    const QString file = folder_.filePath(QLatin1String(storage::kDatabaseFile));
    switch (look.owner) {
        case Owner::Nobody:
            return done();
        case Owner::Other:
            return failed(storage::whyNotOurs(folder_));
        case Owner::Locked:
            return failed(path() + ": " + look.reason);
        case Owner::Ours:
        case Owner::Unreadable:  // opening it says why
            break;
    }
    // It may have gone meanwhile, and is not made anew.
    folder_.setGuard([file] { return QFileInfo::exists(file) ? std::string() : "there is no database"; });
    dao_.emplace(folder_);
    return done();
}

Ending SavedRecords::endingOf(const storage::Outcome& outcome) const {
    return outcome.done ? done() : failed(path() + ": " + outcome.reason);
}

std::optional<std::int64_t> recordIdOf(const std::string& word) {
    std::int32_t id = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), id);
    if (error != std::errc() || end != word.data() + word.size() || id <= 0) return std::nullopt;
    return id;
}

Ending noSuchId(const std::string& word) {
    return wrongUsage("'" + word + "' is not the number of a test record (kestrix-cli records tells them)");
}

Ending noSuchRecord(const std::string& word, const SavedRecords& records) {
    return failed("there is no test record " + word + " in " + records.path());
}

}  // namespace kestrix::cli
