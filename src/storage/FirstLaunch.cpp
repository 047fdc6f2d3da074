#include "storage/FirstLaunch.h"

#include <QFile>

namespace kestrix::storage {

std::unique_ptr<ServiceDao> createTablesOnFirstLaunch(platform::UserDefaults& defaults,
                                                      const platform::DocumentsFolder& folder) {
    const QString first = QLatin1String(kFirstOrvo);
    const QString missing = QLatin1String(kTablesMissing);
    if (defaults.boolForKey(first) && !defaults.boolForKey(missing)) {
        if (QFile::exists(folder.filePath(QLatin1String(kDatabaseFile)))) ServiceDao(folder).createIndexes();
        return nullptr;
    }
    defaults.setBool(missing, true);
    defaults.setBool(first, true);
    auto dataDB = std::make_unique<ServiceDao>(folder);
    dataDB->createTable();
    defaults.setBool(missing, !dataDB->hasTables());
    return dataDB;
}

}  // namespace kestrix::storage
