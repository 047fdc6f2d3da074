#include "shell/AddressOpening.h"

#include <QCoreApplication>

#include "shell/ShellLog.h"

namespace kestrix::shell {

Q_LOGGING_CATEGORY(lcShell, "kestrix.shell", QtWarningMsg)

void openOrSay(const ui::Services& services, const QString& address) {
    if (services.openAddress(address)) return;
    services.notice.show(QCoreApplication::translate("AddressOpening", "No browser opens %1")
                             .replace(QLatin1String("%1"), address));
}

}  // namespace kestrix::shell
