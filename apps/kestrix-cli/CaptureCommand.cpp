#include "apps/kestrix-cli/CaptureCommand.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QDateTime>

#include <any>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "apps/common/SimulatorSource.h"
#include "apps/common/TerminationSignals.h"
#include "apps/kestrix-cli/Output.h"
#include "link/EADSessionController.h"
#include "platform/AccessoryManager.h"
#include "platform/AccessorySources.h"
#include "platform/CaptureFile.h"

namespace kestrix::cli {
namespace {

using platform::Notification;

// Opens a session whenever the tester is there, and writes what it sends.
class Recorder {
  public:
    Recorder(Output& file, std::function<void()> failed)
        : file_(file),
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
        if (!file_.write({reinterpret_cast<const char*>(bytes->data()), bytes->size()})) {
            failed_();
            return;
        }
        bytes_ += bytes->size();
    }

    Output& file_;
    std::function<void()> failed_;
    std::uint64_t bytes_ = 0;
    platform::NotificationCenter::Subscription connected_;
    platform::NotificationCenter::Subscription disconnected_;
    platform::NotificationCenter::Subscription received_;
};

class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

std::string startTime() {
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString();
}

}  // namespace

ExitStatus capture(const CaptureOptions& options) {
    platform::QtScheduler scheduler;
    platform::SourceOrProblem made =
        platform::makeAccessorySource(options.uri, scheduler, app::simulatorSource);
    if (!made.source) return fail(made.problem, made.wrongUri ? kWrongUsage : kFailed);

    const int existing = options.force ? O_TRUNC : O_EXCL;
    const FileDescriptor descriptor(
        open(options.file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | existing, 0666));
    if (descriptor.get() < 0) {
        const std::string why = errno == EEXIST ? "the file exists; --force overwrites it"
                                                : std::generic_category().message(errno);
        return fail(options.file + ": " + why);
    }
    Output file(descriptor.get());
    file.write(platform::captureHeaderLine({options.uri, startTime()}));

    platform::AccessoryManager manager;
    Recorder recorder(file, [] { QCoreApplication::quit(); });
    manager.registerForLocalNotifications();
    manager.addSource(std::move(made.source));
    const app::TerminationSignals signals([] { QCoreApplication::quit(); });
    platform::Scheduler::Timer limit;
    if (options.seconds > 0)
        limit = scheduler.callAfter(std::chrono::seconds(options.seconds), [] { QCoreApplication::quit(); });
    if (file.good()) QCoreApplication::exec();

    if (!file.good())
        return fail(options.file + ": cannot be written to the end; " +
                    fmt::format("{} bytes are kept", recorder.bytes()));
    if (recorder.bytes() == 0) {
        const std::string problem = manager.sources().front()->problem();
        return fail(options.uri + ": no bytes came" + (problem.empty() ? "" : " (" + problem + ")"));
    }
    fmt::print(stderr, "kestrix-cli: {} bytes in {}\n", recorder.bytes(), options.file);
    return kDone;
}

}  // namespace kestrix::cli
