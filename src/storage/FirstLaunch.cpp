#include "storage/FirstLaunch.h"

namespace kestrix::storage {

std::unique_ptr<ServiceDao> createTablesOnFirstLaunch(platform::UserDefaults& defaults,
                                                      const platform::DocumentsFolder& folder) {
    const QString first = QLatin1String(kFirstOrvo);
    const QString missing = QLatin1String(kTablesMissing);
    if (defaults.boolForKey(first) && !defaults.boolForKey(missing)) return nullptr;
    defaults.setBool(missing, true);
    defaults.setBool(first, true);
    auto dataDB = std::make_unique<ServiceDao>(folder);
    dataDB->createTable();
    defaults.setBool(missing, !dataDB->hasTables());
    return dataDB;
}

}  // namespace kestrix::storage
