#include "shell/WindowTitle.h"

#include <QCoreApplication>

#include "link/BluetoothConnect.h"

namespace kestrix::shell {
namespace {

constexpr int kLongestName = 40;

// The context of the translations.
struct WindowTitle {
    Q_DECLARE_TR_FUNCTIONS(WindowTitle)
};

// A tester names itself: whatever it says, the title stays one readable line.
QString readable(const QString& name) {
    QString line;
    for (const QChar letter : name) line += letter.isPrint() ? letter : QChar(u' ');
    line = line.simplified();
    return line.size() <= kLongestName ? line : line.left(kLongestName - 1) + QChar(0x2026);
}

}  // namespace

QString windowTitle(std::int32_t linkState, const QString& tester, bool simulated) {
    const bool connected = linkState == link::kConnected;
    QString state = connected ? WindowTitle::tr("Connected") : WindowTitle::tr("Not connected");
    if (connected && !readable(tester).isEmpty())
        state = WindowTitle::tr("Connected to %1").arg(readable(tester));
    if (simulated) state = WindowTitle::tr("%1 (simulated)").arg(state);
    return WindowTitle::tr("%1 - Kestrix").arg(state);
}

}  // namespace kestrix::shell
