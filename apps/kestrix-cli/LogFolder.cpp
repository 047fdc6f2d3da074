#include "apps/kestrix-cli/LogFolder.h"

#include <QFileInfo>

#include "storage/FirstLaunch.h"
#include "storage/FolderChoice.h"
#include "storage/ServiceDao.h"

namespace kestrix::cli {
namespace {

using Owner = storage::DatabaseLook::Owner;
constexpr auto kPatience = storage::ServiceDao::kPatience;

}  // namespace

LogFolder::LogFolder(const std::string& documents, storage::Readings readings)
    : readings_(readings),
      folder_(storage::documentsFolderFor(QString::fromStdString(documents), readings)),
      defaults_(storage::settingsFileFor({}, folder_), platform::UserDefaults::Start::LooksOnly) {}

Ending LogFolder::look() {
    look_ = storage::lookAtDatabase(folder_, kPatience);
    if (look_.owner == Owner::Other) return failed(storage::whyNotOurs(folder_));
    if (look_.owner == Owner::Locked) return failed(folder_.path().toStdString() + ": " + look_.reason);
    const std::string why = storage::whyKeptOut(readings_, folder_, look_);
    return why.empty() ? done() : wrongUsage(why);
}

Ending LogFolder::open() {
    const QFileInfo folder(folder_.path());
    if (folder.exists() && !folder.isDir()) return wrongUsage(folder_.path().toStdString() + " is no folder");
    if (!defaults_.problem().isEmpty()) return failed(defaults_.problem().toStdString());
    if (Ending ending = look(); ending.status != kDone) return ending;
    folder_.ensure();  // where it cannot be made, the database says so
    storage::noteReadings(readings_, folder_);
    storage::createTablesOnFirstLaunch(defaults_, folder_, kPatience);
    storage::markReadings(readings_, folder_, look_, kPatience);
    folder_.setGuard([this] { return look().line; });
    return done();
}

}  // namespace kestrix::cli
