#include "platform/SecretKeyring.h"

#include <gio/gio.h>
#include <qt6keychain/keychain.h>

#include <QAbstractEventDispatcher>

#include <utility>

#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

const QString kService = QStringLiteral("Kestrix");

// How often GLib's event loop goes round while an answer is waited for.
constexpr std::chrono::milliseconds kTurn{20};

// Empty: it did what it was asked for.
std::string keyringProblem(const QKeychain::Job& job) {
    switch (job.error()) {
        case QKeychain::NoError:
        case QKeychain::EntryNotFound:
            return {};
        case QKeychain::AccessDeniedByUser:
        case QKeychain::AccessDenied:
            return "the desktop's keyring was not opened";
        case QKeychain::NoBackendAvailable:
        case QKeychain::NotImplemented:
            return "this desktop has no keyring";
        default:
            return printableText("no keyring of the desktop can be used: " + job.errorString().toStdString());
    }
}

// The answers come through GLib's event loop. Where Qt has one of its own, that one has to be turned by hand.
bool qtTurnsGLib() {
    const auto* const dispatcher = QAbstractEventDispatcher::instance();
    return dispatcher != nullptr && dispatcher->inherits("QEventDispatcherGlib");
}

// GLib ends a program whose session bus goes away, unless it is told not to. The library asks for the same
// bus.
void outliveTheBus() {
    const auto got = [](GObject*, GAsyncResult* result, gpointer) {
        GDBusConnection* const bus = g_bus_get_finish(result, nullptr);
        if (bus == nullptr) return;
        g_dbus_connection_set_exit_on_close(bus, FALSE);
        g_object_unref(bus);
    };
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, got, nullptr);
}

}  // namespace

SecretKeyring::SecretKeyring() {
    turns_.setInterval(kTurn);
    QObject::connect(&turns_, &QTimer::timeout, &turns_, [] {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) continue;
    });
}

void SecretKeyring::start(QKeychain::Job& job, const std::string& name,
                          std::function<void(QKeychain::Job&)> ended) {
    job.setAutoDelete(true);
    job.setInsecureFallback(false);
    job.setKey(QString::fromStdString(name));
    QObject::connect(&job, &QKeychain::Job::finished, &listener_,
                     [this, ended = std::move(ended)](auto* over) {
                         if (--running_ == 0) turns_.stop();
                         ended(*over);  // this object may be gone afterwards
                     });
    if (++running_ == 1 && !qtTurnsGLib()) turns_.start();
    outliveTheBus();
    job.start();
}

void SecretKeyring::find(const std::string& name, Found found) {
    auto& job = *new QKeychain::ReadPasswordJob(kService);
    start(job, name, [found = std::move(found)](QKeychain::Job& over) {
        if (over.error() != QKeychain::NoError) return found(std::nullopt, keyringProblem(over));
        found(static_cast<QKeychain::ReadPasswordJob&>(over).textData().toStdString(), {});
    });
}

void SecretKeyring::keep(const std::string& name, const std::string& password, Done done) {
    auto& job = *new QKeychain::WritePasswordJob(kService);
    job.setTextData(QString::fromStdString(password));
    start(job, name, [done = std::move(done)](QKeychain::Job& over) { done(keyringProblem(over)); });
}

void SecretKeyring::forget(const std::string& name, Done done) {
    auto& job = *new QKeychain::DeletePasswordJob(kService);
    start(job, name, [done = std::move(done)](QKeychain::Job& over) { done(keyringProblem(over)); });
}

}  // namespace kestrix::platform
