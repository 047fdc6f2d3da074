// Keeps a tester's raw bytes in a file, behind a header line. Each piece is in the file before the next is
// read.

#include <fmt/core.h>
#include <QDateTime>

#include <any>
#include <array>
#include <memory>
#include <string>
#include <utility>

#include "apps/common/SimulatorSource.h"
#include "apps/kestrix-cli/CaptureTarget.h"
#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/UriHelp.h"
#include "platform/AccessoryManager.h"
#include "platform/AccessorySources.h"
#include "platform/AccessoryUri.h"
#include "platform/CaptureFile.h"
#include "platform/EASession.h"

namespace kestrix::cli {
namespace {

using platform::Notification;

std::string startTime() {
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString();
}

// What waits for a file whose reader does not read; more is not taken from the tester.
constexpr std::size_t kMostBytesWaiting = 1'048'576;

// Opens a session whenever the tester is there, and writes what it sends.
class Recorder final : private platform::StreamDelegate {
  public:
    Recorder(CaptureTarget& target, std::string uri)
        : target_(target),
          uri_(std::move(uri)),
          pump_(*target.output(), [this] { keep(); }),
          connected_(center().addObserver(platform::kAccessoryDidConnect,
                                          [this](const Notification& event) { open(event); })),
          disconnected_(center().addObserver(platform::kAccessoryDidDisconnect,
                                             [this](const Notification&) { session_.reset(); })) {}
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder() override = default;

  private:
    static platform::NotificationCenter& center() { return platform::NotificationCenter::defaultCenter(); }

    void open(const Notification& event) {
        const auto* accessory = platform::userInfoOf<platform::AccessoryPtr>(event, platform::kAccessoryKey);
        if (accessory == nullptr || *accessory == nullptr) return;
        session_ = platform::EASession::create(*accessory, (*accessory)->protocolStrings.front());
        if (!session_) return;
        session_->inputStream().setDelegate(this);
        session_->inputStream().scheduleInRunLoop();
        session_->inputStream().open();
    }

    void stream(platform::Stream&, platform::StreamEvent event) override {
        if (event == platform::StreamEvent::HasBytesAvailable) keep();
    }

    // Takes what has come, as far as the file takes it.
    void keep() {
        std::array<std::uint8_t, 4096> buffer;
        while (session_ && target_.output()->waiting() < kMostBytesWaiting &&
               session_->inputStream().hasBytesAvailable()) {
            const std::ptrdiff_t count = session_->inputStream().read(buffer.data(), buffer.size());
            if (count <= 0) break;
            if (headerLine_.empty()) headerLine_ = platform::captureHeaderLine({uri_, startTime()});
            const std::string_view bytes(reinterpret_cast<const char*>(buffer.data()),
                                         static_cast<std::size_t>(count));
            if (!target_.write(headerLine_, bytes)) break;
        }
        if (!target_.output()->good()) EventLoop::quit();
    }

    CaptureTarget& target_;
    std::string uri_;
    std::string headerLine_;  // once the first bytes have come
    std::unique_ptr<platform::EASession> session_;
    OutputPump pump_;
    platform::NotificationCenter::Subscription connected_;
    platform::NotificationCenter::Subscription disconnected_;
};

struct CaptureOptions {
    std::string uri;
    std::string file;
    bool force = false;  // overwrite
};

Ending capture(Runner& runner, const CaptureOptions& options) {
    runner.limitUnlessGiven(0);
    EventLoop loop(runner);
    platform::SourceOrProblem made = platform::makeAccessorySource(
        options.uri, loop.scheduler, app::simulatorSource, platform::makeAnyByteListener);
    if (!made.source) return {made.wrongUri ? kWrongUsage : kFailed, made.problem};

    CaptureTarget target(options.file, options.force);
    const auto uri = platform::parseAccessoryUri(options.uri);
    if (uri && uri->scheme == "replay" && target.isFile(uri->target))
        return failed(target.name() + ": it is the capture that is to be replayed");
    if (std::string problem = target.open(runner); !problem.empty())
        return failed(target.name() + ": " + problem);
    if (target.output() == nullptr) return failed(target.name() + ": nobody reads it");

    std::string problem;
    {
        platform::AccessoryManager manager;
        const Recorder recorder(target, options.uri);
        manager.registerForLocalNotifications();
        manager.addSource(std::move(made.source));
        loop.run();
        problem = manager.sources().front()->problem();
    }
    runner.finish(*target.output());
    if (const std::string why = target.output()->problem(); !why.empty())
        return failed(fmt::format("{}: cannot be written to the end ({}); {} bytes are kept", target.name(),
                                  why, target.kept()));
    if (target.kept() == 0)
        return failed(options.uri + ": no bytes came" + (problem.empty() ? "" : " (" + problem + ")"));
    return done(fmt::format("{} bytes in {}", target.kept(), target.name()));
}

Action describeCapture(CommandOptions& options) {
    auto given = std::make_shared<CaptureOptions>();
    options.neededWord("uri", given->uri, kUriHelp);
    options.neededWord("file", given->file, "File to write; - is standard output");
    options.flag("--force", given->force, "Overwrite an earlier capture");
    return [given](Runner& runner) { return capture(runner, *given); };
}

}  // namespace

extern const Command captureCommand;
const Command captureCommand{"capture", "Keep a tester's raw bytes in a file", AtSignal::EndsIt,
                             describeCapture};

}  // namespace kestrix::cli
