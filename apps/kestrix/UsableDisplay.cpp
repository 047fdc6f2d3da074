#include "apps/kestrix/UsableDisplay.h"

#include <dlfcn.h>

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>

namespace kestrix {
namespace {

// The function of a library that the platform plugins load; none where that is not installed.
template <class Function>
Function* find(const char* library, const char* name) {
    void* const opened = dlopen(library, RTLD_NOW);
    return opened != nullptr ? reinterpret_cast<Function*>(dlsym(opened, name)) : nullptr;
}

using Disconnect = std::function<void()>;

// What ends the connection; none when the display does not answer.
std::optional<Disconnect> connectToX() {
    constexpr const char* kLibrary = "libxcb.so.1";
    auto* const connect = find<void*(const char*, int*)>(kLibrary, "xcb_connect");
    auto* const hasError = find<int(void*)>(kLibrary, "xcb_connection_has_error");
    auto* const disconnect = find<void(void*)>(kLibrary, "xcb_disconnect");
    if (connect == nullptr || hasError == nullptr || disconnect == nullptr) return std::nullopt;
    void* const connection = connect(nullptr, nullptr);
    const Disconnect end = [disconnect, connection] { disconnect(connection); };
    if (hasError(connection) == 0) return end;
    end();
    return std::nullopt;
}

std::optional<Disconnect> connectToWayland() {
    // An open connection, which serves once.
    if (qEnvironmentVariableIsSet("WAYLAND_SOCKET")) return Disconnect();
    constexpr const char* kLibrary = "libwayland-client.so.0";
    auto* const connect = find<void*(const char*)>(kLibrary, "wl_display_connect");
    auto* const disconnect = find<void(void*)>(kLibrary, "wl_display_disconnect");
    if (connect == nullptr || disconnect == nullptr) return std::nullopt;
    void* const display = connect(nullptr);
    if (display == nullptr) return std::nullopt;
    return [disconnect, display] { disconnect(display); };
}

struct Kind {
    const char* plugin;    // how its plugins' names begin
    const char* variable;  // names the display; empty is none
    std::optional<Disconnect> (*connect)();
};
constexpr Kind kKinds[] = {{"xcb", "DISPLAY", connectToX}, {"wayland", "WAYLAND_DISPLAY", connectToWayland}};

}  // namespace

UsableDisplay::UsableDisplay() {
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    bool onlyThese = true;
    for (const QByteArray& plugin : chosen.split(';')) {
        bool known = chosen.isEmpty();
        for (const Kind& kind : kKinds) known = known || plugin.startsWith(kind.plugin);
        onlyThese = onlyThese && known;
    }
    if (!onlyThese) return;  // one that needs no display, or says so itself
    std::string named;
    for (const Kind& kind : kKinds) {
        const QByteArray display = qgetenv(kind.variable);
        if (display.isEmpty() || (!chosen.isEmpty() && !chosen.contains(kind.plugin))) continue;
        if (std::optional<Disconnect> disconnect = kind.connect()) {
            disconnect_ = std::move(*disconnect);
            return;
        }
        named += (named.empty() ? "" : " and ") + display.toStdString();
    }
    problem_ = named.empty() ? "there is no display" : "the display " + named + " cannot be used";
}

}  // namespace kestrix
