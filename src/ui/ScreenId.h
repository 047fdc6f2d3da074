#pragma once

#include <QMetaEnum>
#include <QObject>

#include <cstdint>

namespace kestrix::ui {
Q_NAMESPACE

// Every screen that can be presented by another folder's screen, which does not know its class.
enum class ScreenId : std::uint8_t {
    MainView,
    SideBars,
    RecordList,
    Menu,
    SaveData,
    History,
    HistoryCell,
    MailCompose,
    Tester,
    BluetoothConnectionHelp,
    Help,
    About,
    MoreApps,
    SafetyTips,
    HowtoUse,
    SessionSearch,
    SessionTransfer,
};
Q_ENUM_NS(ScreenId)

// As it stands above: "SaveData".
inline const char* nameOf(ScreenId id) {
    return QMetaEnum::fromType<ScreenId>().valueToKey(static_cast<int>(id));
}

}  // namespace kestrix::ui
