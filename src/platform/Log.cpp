#include "platform/Log.h"

#include <QString>

namespace kestrix::platform {

Q_LOGGING_CATEGORY(lcAccessory, "kestrix.accessory", QtWarningMsg)
Q_LOGGING_CATEGORY(lcSettings, "kestrix.settings", QtWarningMsg)

void installLogFormat(bool verbose) {
    qSetMessagePattern(QStringLiteral("%{type} %{category}: %{message}"));
    if (verbose) QLoggingCategory::setFilterRules(QStringLiteral("kestrix.*.info=true"));
}

}  // namespace kestrix::platform
