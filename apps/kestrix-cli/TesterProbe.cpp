#include "apps/kestrix-cli/TesterProbe.h"

#include <fmt/core.h>

#include <array>
#include <span>
#include <utility>

#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"

namespace kestrix::cli {
namespace {

using platform::FailedStep;

struct StepWord {
    FailedStep step;
    const char* word;
};

constexpr StepWord kStepWords[] = {
    {FailedStep::Adapter, "adapter"},          {FailedStep::Pairing, "pairing"},
    {FailedStep::Missing, "missing"},          {FailedStep::Rights, "rights"},
    {FailedStep::Busy, "port busy"},           {FailedStep::Refused, "refused"},
    {FailedStep::NoAnswer, "no answer"},       {FailedStep::NoBytes, "no bytes"},
    {FailedStep::NoFrames, "no valid frames"}, {FailedStep::Ended, "connection ended"},
};

const char* wordOf(FailedStep step) {
    for (const StepWord& row : kStepWords) {
        if (row.step == step) return row.word;
    }
    return "failed";
}

}  // namespace

TesterProbe::TesterProbe(std::unique_ptr<platform::AccessorySource> source, std::function<void()> found)
    : source_(std::move(source)), found_(std::move(found)) {
    source_->start(*this);
}

TesterProbe::~TesterProbe() {
    source_->stop();
}

void TesterProbe::appeared(const platform::AccessoryPtr& accessory) {
    session_ = platform::EASession::create(accessory, accessory->protocolStrings.front());
    if (!session_) return;
    session_->inputStream().setDelegate(this);
    session_->inputStream().scheduleInRunLoop();
    session_->inputStream().open();
}

void TesterProbe::disappeared(const platform::AccessoryPtr&) {
    session_.reset();
}

// A channel that has just been opened has no problem. What is known of the tester is that of before.
void TesterProbe::searchChanged() {
    if (source_->failedStep() == FailedStep::None) return;
    failed_ = source_->failedStep();
    why_ = source_->problem();
}

void TesterProbe::stream(platform::Stream&, platform::StreamEvent event) {
    if (event != platform::StreamEvent::HasBytesAvailable) return;
    std::array<std::uint8_t, 1024> buffer;
    std::string hexText;
    while (session_->inputStream().hasBytesAvailable()) {
        const std::ptrdiff_t count = session_->inputStream().read(buffer.data(), buffer.size());
        if (count <= 0) break;
        bytes_ += static_cast<std::uint64_t>(count);
        protocol::appendHexText(hexText, std::span(buffer).first(static_cast<std::size_t>(count)));
    }
    frames_.append(hexText);
    while (const auto frame = frames_.nextFrame()) {
        protocol::KV3820protocal decoder;
        const protocol::MeterReading& record = decoder.initFromString(*frame).return3820data();
        if (found() || record.iFunction == 0) continue;
        foundTester_ = true;
        function_ = record.strfunction;
        found_();
    }
}

std::string TesterProbe::report() const {
    if (found()) return function_.empty() ? "a tester" : "a tester, at " + function_;
    FailedStep step = source_->failedStep();
    std::string text = source_->problem();
    if (step == FailedStep::None && bytes_ == 0) {
        step = failed_;
        text = why_;
    }
    if (step == FailedStep::None && bytes_ > 0) {  // whole frames, of a function that there is not
        step = FailedStep::NoFrames;
        text = "bytes come, but no valid frame";
    }
    if (step == FailedStep::None) return "not found: no answer yet";
    return fmt::format("not found: {} ({})", wordOf(step), text);
}

}  // namespace kestrix::cli
