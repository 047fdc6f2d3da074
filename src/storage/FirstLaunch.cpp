#include "storage/FirstLaunch.h"

#include <QFile>
#include <QFileInfo>

namespace kestrix::storage {

std::unique_ptr<ServiceDao> createTablesOnFirstLaunch(platform::UserDefaults& defaults,
                                                      const platform::DocumentsFolder& folder,
                                                      std::chrono::milliseconds patience) {
    const QString first = QLatin1String(kFirstOrvo);
    const QString missing = QLatin1String(kTablesMissing);
    const QString here = QFileInfo(folder.path()).absoluteFilePath().replace(u'\n', u' ');
    const bool known = defaults.stringForKey(QLatin1String(kTablesIn)) == here;
    if (defaults.boolForKey(first) && !defaults.boolForKey(missing) && known) {
        if (QFile::exists(folder.filePath(QLatin1String(kDatabaseFile))))
            ServiceDao(folder, patience).createIndexes();
        return nullptr;
    }
    defaults.setBool(missing, true);
    defaults.setString(QLatin1String(kTablesIn), here);
    defaults.setBool(first, true);
    auto dataDB = std::make_unique<ServiceDao>(folder, patience);
    dataDB->createTable();
    defaults.setBool(missing, !dataDB->hasTables());
    return dataDB;
}

}  // namespace kestrix::storage
