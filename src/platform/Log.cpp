#include "platform/Log.h"

#include <QString>

namespace kestrix::platform {

Q_LOGGING_CATEGORY(lcAccessory, "kestrix.accessory")
Q_LOGGING_CATEGORY(lcSettings, "kestrix.settings")

void installLogFormat() {
    qSetMessagePattern(QStringLiteral("%{type} %{category}: %{message}"));
}

}  // namespace kestrix::platform
