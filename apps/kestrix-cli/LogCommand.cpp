// Records unattended: a test record is made, and what the display shows is filed with it as it comes.

#include <fmt/core.h>

#include <memory>
#include <optional>
#include <string>
#include <tuple>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/Link.h"
#include "apps/kestrix-cli/LogFolder.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "apps/kestrix-cli/UriHelp.h"
#include "display/Steps.h"
#include "live/MeasurementEvidence.h"
#include "platform/DateText.h"
#include "storage/FolderChoice.h"
#include "storage/ServiceDao.h"
#include "storage/TestRecords.h"

namespace kestrix::cli {
namespace {

constexpr int kLongestInterval = 1'000'000;  // seconds
constexpr int kMostSnapshots = 1'000'000'000;
constexpr std::size_t kMostSaidWaiting = 65'536;  // bytes that the reader has not taken

struct LogOptions {
    std::string uri;
    std::string documents;
    storage::RecordData typed;
    std::optional<int> every;  // seconds; none: every change
    bool changes = false;      // said, and the default
    std::optional<int> count;
};

// What the tester's display shows, stored by the rules of the options until one of them ends it.
class Logger final : public link::BusinessCommunicationDelegate {
  public:
    Logger(const LogOptions& options, storage::GrowingRecord& record, Runner& runner, const Link& link)
        : options_(options),
          record_(record),
          runner_(runner),
          link_(link),
          linkStates_(platform::NotificationCenter::defaultCenter().addObserver(
              link::Orvoblueviewnotification, [this](const platform::Notification& event) {
                  if (const auto* state = platform::objectOf<std::string>(event))
                      display::linkStateChanged(display_,
                                                *state == "1" ? link::kConnected : link::kNotConnected);
              })) {
        display::linkStateChanged(display_, link::kNotConnected);
    }

    void didReceive3820Data(const protocol::MeterReading& reading, bool) override {
        display::recordCame(display_, reading);
        source_.recordCame(link_.connect.measuredevice(), link_.manager);
        if (!options_.every) {
            if (shown() != stored_) store();
        } else if (!ticking_) {
            tick();
        }
    }

    // Why it ended by itself; empty when everything was stored.
    const std::string& problem() const { return problem_; }

  private:
    using Texts = std::tuple<std::string, std::string, std::string>;
    Texts shown() const { return {display_.strfunction.value_or(""), display_.parameters, display_.results}; }

    // Only what the tester measures now: what was shown before the link went is no reading of this moment.
    bool mayBeStored() const {
        return display::canBeRecorded(display_) && display::showsReading(display_) &&
               !display::recordsRowsOfEarlierLink(display_);
    }

    void tick() {
        ticking_ = true;
        timer_ = link_.scheduler.callAfter(std::chrono::seconds(*options_.every), [this] { tick(); });
        store();
    }

    void store() {
        if (ended_ || runner_.stopping() || !mayBeStored()) return;
        storage::MeasureData measure;
        measure.dataName = "S_" + std::to_string(record_.record().samples + 1);
        measure.function = *display_.strfunction;
        measure.parameters = display_.parameters;
        measure.result = display_.results;
        measure.dateTime = times_.text(std::chrono::system_clock::now());
        measure.comments = " ";
        const storage::Outcome outcome = record_.add(measure, source_.evidenceOf(display_.measured, false));
        if (!outcome.done) return end(outcome.reason);
        stored_ = shown();
        say(measure, outcome.identity);
        if (options_.count && record_.record().samples >= *options_.count) end({});
    }

    void say(const storage::MeasureData& measure, std::int64_t identity) {
        Output& output = runner_.output();
        if (output.waiting() > kMostSaidWaiting) return;
        output.line(fmt::format("stored {} {} {} {}: {}", identity, measure.dataName, measure.dateTime,
                                measure.function, measure.result));
    }

    void end(std::string problem) {
        ended_ = true;
        problem_ = std::move(problem);
        EventLoop::quit();
    }

    const LogOptions& options_;
    storage::GrowingRecord& record_;
    Runner& runner_;
    const Link& link_;
    platform::DateText times_{platform::kTimePattern, {}, {}};
    display::Display display_;
    live::ReadingSource source_;
    Texts stored_;
    bool ticking_ = false;
    bool ended_ = false;
    std::string problem_;
    platform::Scheduler::Timer timer_;
    platform::NotificationCenter::Subscription linkStates_;
};

std::string inWords(std::int64_t samples) {
    return fmt::format("{} measurement{}", samples, samples == 1 ? "" : "s");
}

bool isGone(storage::ServiceDao& dao, std::int64_t recordId) {
    return dao.findRecordofId(recordId).empty() && dao.lastOutcome().done;
}

// A record that stayed empty is taken away again.
Ending endingOf(storage::ServiceDao& dao, const storage::RecordData& record, const std::string& problem,
                const std::string& whyNothingCame) {
    if (record.samples == 0) {
        storage::DeletedRecord deleted;
        const storage::Outcome gone = storage::deleteRecord(dao, record.recordId, deleted);
        const std::string empty =
            gone.done || dao.findRecordofId(record.recordId).empty()
                ? std::string()
                : fmt::format("; the empty test record {} stays: {}", record.recordId, gone.reason);
        return failed((problem.empty() ? whyNothingCame : "nothing is stored: " + problem) + empty);
    }
    if (!problem.empty() && isGone(dao, record.recordId))
        return failed(fmt::format("test record {} ({}) was deleted meanwhile, with its {}", record.recordId,
                                  record.projectName, inWords(record.samples)));
    const std::string kept = fmt::format("{} in test record {} ({})", inWords(record.samples),
                                         record.recordId, record.projectName);
    return problem.empty() ? done(kept) : failed(kept + ", then no more: " + problem);
}

Ending log(Runner& runner, const LogOptions& options) {
    runner.limitUnlessGiven(0);
    EventLoop loop(runner);
    Link link(runner.settings, loop.scheduler);
    if (Ending ending = link.addSource(options.uri); ending.status != kDone) return ending;
    leaveDatabaseLogOff();
    LogFolder folder(options.documents, storage::readingsOf(options.uri));
    if (Ending ending = folder.open(); ending.status != kDone) return ending;

    storage::ServiceDao dao(folder.folder());
    storage::GrowingRecord record(dao, options.typed);
    const platform::DateText times(platform::kTimePattern, {}, {});
    if (const storage::Outcome begun = record.begin(times.text(std::chrono::system_clock::now()));
        !begun.done)
        return failed("nothing can be recorded: " + begun.reason);

    std::string problem;
    {
        Logger logger(options, record, runner, link);
        link.connect.initBlue();
        link.connect.setDelegate(&logger);
        loop.run();
        link.connect.setDelegate(nullptr);
        problem = logger.problem();
    }
    link.connect.allRelease();
    const std::string why = link.problem();
    return endingOf(dao, record.record(), problem,
                    options.uri + ": no reading came" + (why.empty() ? "" : " (" + why + ")"));
}

Action describeLog(CommandOptions& options) {
    auto given = std::make_shared<LogOptions>();
    options.neededWord("uri", given->uri, kUriHelp);
    options.neededText("--project", "NAME", given->typed.projectName, "Project of the test record");
    options.text("--company", "NAME", given->typed.company, "Its company");
    options.text("--address", "TEXT", given->typed.addres, "Its address");
    options.text("--operator", "NAME", given->typed.operators, "Its operator");
    options.text("--serial", "TEXT", given->typed.serial, "Its serial number");
    options.text("--documents", "DIR", given->documents, "The folder of the database");
    options.flag("--changes", given->changes, "Store every change of what the display shows; the default");
    options.number("--every", "N", given->every, {1, kLongestInterval},
                   "Store what it shows every N seconds");
    options.excludeEachOther("--changes", "--every");
    options.number("--count", "N", given->count, {1, kMostSnapshots}, "End when N measurements are stored");
    // What is stored is its work; what it writes about it only says so.
    return [given](Runner& runner) {
        Ending ending = log(runner, *given);
        ending.holdsUnread = true;
        return ending;
    };
}

}  // namespace

extern const Command logCommand;
const Command logCommand{"log", "Record unattended into a test record", AtSignal::EndsIt, describeLog};

}  // namespace kestrix::cli
