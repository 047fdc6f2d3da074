#include "platform/LastUsed.h"

namespace kestrix::platform {
namespace {

const QString kLastUsedTester = QStringLiteral("lastUsedTester");

}  // namespace

LastUsed lastUsedIn(UserDefaults& settings) {
    return {[&settings] { return settings.stringForKey(kLastUsedTester).toStdString(); },
            [&settings](const std::string& uri) {
                const QString text = QString::fromStdString(uri);
                if (settings.stringForKey(kLastUsedTester) != text) settings.setString(kLastUsedTester, text);
            }};
}

}  // namespace kestrix::platform
