// The tester's display, live: redrawn in place in a terminal, elsewhere one line for each change.

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/Link.h"
#include "apps/kestrix-cli/TerminalDisplay.h"
#include "apps/kestrix-cli/UriHelp.h"
#include "display/Steps.h"

namespace kestrix::cli {
namespace {

constexpr int kSecondsWithoutTerminal = 20;
constexpr std::chrono::milliseconds kRedrawInterval{50};  // no oftener than this
constexpr std::chrono::milliseconds kAgeInterval{
    500};  // and at least so often, for the time since the last frame
constexpr std::chrono::seconds kRateWindow{4};
constexpr std::size_t kMostLinesWaiting = 65'536;  // bytes of lines that the reader has not taken
constexpr const char* kHideCursor = "\x1b[?25l";
constexpr const char* kShowCursor = "\x1b[?25h";

// Follows the link and keeps what the display shows.
class Monitor : public link::BusinessCommunicationDelegate {
  public:
    Monitor(Link& link, Output& output, const std::string& uri)
        : link_(link),
          output_(output),
          linkState_(platform::NotificationCenter::defaultCenter().addObserver(
              link::Orvoblueviewnotification, [this](const platform::Notification& event) {
                  if (const auto* state = platform::objectOf<std::string>(event))
                      linkChanged(*state == "1" ? link::kConnected : link::kNotConnected);
              })) {
        state_.source = uri;
        display::linkStateChanged(state_.display, link::kNotConnected);
    }

    void didReceive3820Data(const protocol::MeterReading& record, bool) override {
        ++state_.frames;
        lastFrame_ = link_.scheduler.now();
        frameTimes_.push_back(lastFrame_);
        if (frameTimes_.size() > kMostFrameTimes) frameTimes_.pop_front();
        display::recordCame(state_.display, record);
        state_.reading = record;
        changed();
    }

    bool sawFrames() const { return state_.frames > 0; }

    // The reader has taken all that was written: what changed since then can be written.
    virtual void outputTaken() = 0;

  protected:
    virtual void changed() = 0;
    // To be shown before it returns: what follows a disconnect may block for a second.
    virtual void linkHasChanged() { changed(); }

    // The state with all that depends on the time.
    const DisplayState& currentState() {
        const auto now = link_.scheduler.now();
        while (!frameTimes_.empty() && now - frameTimes_.front() > kRateWindow) frameTimes_.pop_front();
        state_.framesPerSecond = 0;
        if (frameTimes_.size() > 1) {
            const std::chrono::duration<double> span = frameTimes_.back() - frameTimes_.front();
            if (span.count() > 0)
                state_.framesPerSecond = static_cast<double>(frameTimes_.size() - 1) / span.count();
        }
        if (state_.frames > 0)
            state_.secondsSinceLastFrame = std::chrono::duration<double>(now - lastFrame_).count();
        state_.problem = connected() ? std::string() : link_.problem();
        return state_;
    }

    const DisplayState& state() const { return state_; }
    bool connected() const { return state_.display.link == display::LinkState::Connected; }
    Link& link() { return link_; }
    Output& output() { return output_; }
    void write(std::string_view text) {
        if (!output_.write(text)) EventLoop::quit();
    }

  private:
    void linkChanged(std::int32_t linkState) {
        display::linkStateChanged(state_.display, linkState);
        // A value must never stand there as live after its tester has gone.
        if (!connected()) state_.reading.reset();
        linkHasChanged();
    }

    static constexpr std::size_t kMostFrameTimes = 4096;

    Link& link_;
    Output& output_;
    DisplayState state_;
    platform::Scheduler::TimePoint lastFrame_{};
    std::deque<platform::Scheduler::TimePoint> frameTimes_;
    platform::NotificationCenter::Subscription linkState_;
};

// While the reader does not read, changes are left out and not kept: when he does again, the latest one
// follows.
class LineMonitor final : public Monitor {
  public:
    using Monitor::Monitor;
    void outputTaken() override { changed(); }

  private:
    void changed() override {
        std::string line = state().reading ? renderLine(*state().reading)
                           : connected()   ? "Connected"
                                           : "Not Connected";
        if (line == last_ || output().waiting() > kMostLinesWaiting) return;
        last_ = std::move(line);
        if (!output().line(last_)) EventLoop::quit();
    }
    std::string last_;
};

class ScreenMonitor final : public Monitor {
  public:
    ScreenMonitor(Link& link, Output& output, const std::string& uri) : Monitor(link, output, uri) {
        write(kHideCursor);
        app::TerminationSignals::setLastWords(output.descriptor(), kShowCursor);
        draw();
    }
    ScreenMonitor(const ScreenMonitor&) = delete;
    ScreenMonitor& operator=(const ScreenMonitor&) = delete;
    ~ScreenMonitor() override {
        app::TerminationSignals::setLastWords(-1, nullptr);
        write(kShowCursor);
    }
    void outputTaken() override { draw(); }

  private:
    struct Window {
        int columns = 80;
        int rows = 24;
        bool operator==(const Window&) const = default;
    };
    static Window window() {
        winsize size{};
        if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return {};
        return {size.ws_col, size.ws_row};
    }

    void changed() override {
        if (std::exchange(drawSoon_, true)) return;
        timer_ = link().scheduler.callAfter(kRedrawInterval, [this] { draw(); });
    }

    void linkHasChanged() override { draw(); }

    // While the terminal does not take what was drawn, nothing is drawn: outputTaken() draws the state of
    // then.
    void draw() {
        if (output().waiting() > 0) return;
        drawSoon_ = false;
        const Window current = window();
        if (current != window_) {  // what stood there has been wrapped anew
            write("\x1b[2J\x1b[H");
            lines_.clear();
            window_ = current;
        }
        const TerminalStyle style{std::getenv("NO_COLOR") == nullptr, current.columns};
        // The cursor stands below the display.
        std::vector<std::string> next = fitHeight(renderDisplay(currentState(), style), current.rows - 1);
        write(redrawInPlace(lines_, next));
        lines_ = std::move(next);
        timer_ = link().scheduler.callAfter(kAgeInterval, [this] { draw(); });
    }

    std::vector<std::string> lines_;
    Window window_{0, 0};
    bool drawSoon_ = false;
    platform::Scheduler::Timer timer_;
};

bool understandsEscapes() {
    const char* kind = std::getenv("TERM");
    return kind != nullptr && std::string_view(kind) != "dumb";
}

Ending monitor(Runner& runner, const std::string& uri) {
    const bool terminal = isatty(STDOUT_FILENO) == 1;
    const bool screen = terminal && understandsEscapes();
    runner.limitUnlessGiven(terminal ? 0 : kSecondsWithoutTerminal);

    EventLoop loop(runner);
    Link link(runner.settings, loop.scheduler);
    if (Ending ending = link.addSource(uri); ending.status != kDone) return ending;

    bool sawFrames = false;
    {
        std::unique_ptr<Monitor> view;
        if (screen) {
            view = std::make_unique<ScreenMonitor>(link, runner.output(), uri);
        } else {
            view = std::make_unique<LineMonitor>(link, runner.output(), uri);
        }
        loop.outputTaken = [&view] { view->outputTaken(); };
        link.connect.initBlue();
        link.connect.setDelegate(view.get());
        loop.run();
        link.connect.setDelegate(nullptr);
        loop.outputTaken = nullptr;
        sawFrames = view->sawFrames();
    }
    link.connect.allRelease();
    if (sawFrames) return done();
    const std::string problem = link.problem();
    return failed(uri + ": no tester found" + (problem.empty() ? "" : " (" + problem + ")"));
}

Action describeMonitor(CommandOptions& options) {
    auto uri = std::make_shared<std::string>();
    options.neededWord("uri", *uri, kUriHelp);
    return [uri](Runner& runner) { return monitor(runner, *uri); };
}

}  // namespace

extern const Command monitorCommand;
const Command monitorCommand{"monitor", "The tester's display, live", AtSignal::EndsIt, describeMonitor};

}  // namespace kestrix::cli
