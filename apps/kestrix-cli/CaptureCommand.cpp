#include "apps/kestrix-cli/CaptureCommand.h"

#include <fmt/format.h>
#include <QCoreApplication>
#include <QDateTime>

#include <any>
#include <string>
#include <utility>

#include "apps/common/SimulatorSource.h"
#include "apps/common/TerminationSignals.h"
#include "apps/kestrix-cli/CaptureTarget.h"
#include "link/EADSessionController.h"
#include "platform/AccessoryManager.h"
#include "platform/AccessorySources.h"
#include "platform/AccessoryUri.h"
#include "platform/CaptureFile.h"

namespace kestrix::cli {
namespace {

using platform::Notification;

std::string startTime() {
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString();
}

// Opens a session whenever the tester is there, and writes what it sends.
class Recorder {
  public:
    Recorder(CaptureTarget& target, std::string uri, std::function<void()> failed)
        : target_(target),
          uri_(std::move(uri)),
          failed_(std::move(failed)),
          connected_(center().addObserver(platform::kAccessoryDidConnect,
                                          [this](const Notification& event) { open(event); })),
          disconnected_(center().addObserver(platform::kAccessoryDidDisconnect,
                                             [](const Notification&) { controller().closeSession(); })),
          received_(center().addObserver(link::EADSessionDataReceivedNotification,
                                         [this](const Notification&) { keep(); })) {}
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder() { controller().closeSession(); }

    std::uint64_t bytes() const { return bytes_; }

  private:
    static platform::NotificationCenter& center() { return platform::NotificationCenter::defaultCenter(); }
    static link::EADSessionController& controller() { return link::EADSessionController::sharedController(); }

    void open(const Notification& event) {
        const auto accessory =
            std::any_cast<platform::AccessoryPtr>(event.userInfo.at(platform::kAccessoryKey));
        controller().setupControllerForAccessory(accessory, accessory->protocolStrings.front());
        controller().openSession();
    }

    void keep() {
        const auto bytes = controller().readData(controller().readBytesAvailable());
        if (!bytes || bytes->empty()) return;
        if (headerLine_.empty()) headerLine_ = platform::captureHeaderLine({uri_, startTime()});
        if (!target_.write(headerLine_, {reinterpret_cast<const char*>(bytes->data()), bytes->size()})) {
            failed_();
            return;
        }
        bytes_ += bytes->size();
    }

    CaptureTarget& target_;
    std::string uri_;
    std::string headerLine_;  // once the first bytes have come
    std::function<void()> failed_;
    std::uint64_t bytes_ = 0;
    platform::NotificationCenter::Subscription connected_;
    platform::NotificationCenter::Subscription disconnected_;
    platform::NotificationCenter::Subscription received_;
};

}  // namespace

ExitStatus capture(const CaptureOptions& options) {
    platform::QtScheduler scheduler;
    platform::SourceOrProblem made =
        platform::makeAccessorySource(options.uri, scheduler, app::simulatorSource);
    if (!made.source) return fail(made.problem, made.wrongUri ? kWrongUsage : kFailed);

    CaptureTarget target(options.file, options.force);
    if (!target.problem().empty()) return fail(options.file + ": " + target.problem());
    const auto uri = platform::parseAccessoryUri(options.uri);
    if (uri && uri->scheme == "replay" && target.isFile(uri->target))
        return fail(options.file + ": it is the capture that is to be replayed");

    platform::AccessoryManager manager;
    Recorder recorder(target, options.uri, [] { QCoreApplication::quit(); });
    manager.registerForLocalNotifications();
    manager.addSource(std::move(made.source));
    const app::TerminationSignals signals([] { QCoreApplication::quit(); });
    platform::Scheduler::Timer limit;
    if (options.seconds > 0)
        limit = scheduler.callAfter(std::chrono::seconds(options.seconds), [] { QCoreApplication::quit(); });
    QCoreApplication::exec();

    if (!target.good())
        return fail(options.file + ": cannot be written to the end; " +
                    fmt::format("{} bytes are kept", recorder.bytes()));
    if (recorder.bytes() == 0) {
        const std::string problem = manager.sources().front()->problem();
        return fail(options.uri + ": no bytes came" + (problem.empty() ? "" : " (" + problem + ")"));
    }
    return say(fmt::format("{} bytes in {}", recorder.bytes(), options.file));
}

}  // namespace kestrix::cli
