#include "platform/BluezDialer.h"

#include <algorithm>
#include <utility>

#include "platform/BluetoothAddress.h"
#include "platform/BluezProblems.h"

namespace kestrix::platform {
namespace {

constexpr const char* kScheme = "bluetooth:";
constexpr std::size_t kMostNamed = 4;  // devices in one line

}  // namespace

BluezDialer::BluezDialer(std::string address, LastUsed lastUsed, std::shared_ptr<BluezProfile> profile)
    : address_(std::move(address)), lastUsed_(std::move(lastUsed)), profile_(std::move(profile)) {
    observer_ = service().observe([this](const BluezService::News& news) { hear(news); });
}

BluezDialer::~BluezDialer() = default;

void BluezDialer::dial(Done done) {
    cancel();
    noteWhatWasNoTester();
    done_ = std::move(done);
    service().ask();
    if (service().isAsking()) {
        waitsForService_ = true;
    } else {
        begin();
    }
}

void BluezDialer::cancel() {
    done_ = nullptr;
    waitsForService_ = false;
    queue_.clear();
    attempt_.reset();
    limit_.cancel();
}

void BluezDialer::heard() {
    const std::string address = std::exchange(opened_, {});
    if (address.empty()) return;
    leftAloneUntil_.erase(address);
    const bool isNew = lastUsedAddress() != address;
    lastUsedHere_ = address;
    if (isNew && lastUsed_.write) lastUsed_.write(kScheme + address);
}

void BluezDialer::noteWhatWasNoTester() {
    silent_ = opened_;
    if (opened_.empty()) return;
    leftAloneUntil_[opened_] = service().scheduler().now() + kNoTesterPause;
    reasons_[std::exchange(opened_, {})] = openedButNoTester();
}

void BluezDialer::hear(const BluezService::News& news) {
    if (waitsForService_ && !service().isAsking()) {
        waitsForService_ = false;
        begin();
        return;
    }
    if (!news.mayBeBack || !peerMayBeBack) return;
    if (!news.device.empty()) {
        const auto device = service().objects().devices.find(news.device);
        if (device == service().objects().devices.end() || profile_->isConnecting(news.device) ||
            !problemOfDevice(device->second, service().objects()).text.empty())
            return;
        if (!address_.empty() && device->second.address != address_) return;
        if (news.wasHeard && !isWorthATry(device->second.address)) return;
    }
    peerMayBeBack();
}

// A device that is heard in a search may have come back. One that has answered otherwise than by silence was
// within reach before, and would only do so again.
bool BluezDialer::isWorthATry(const std::string& address) {
    const auto reason = reasons_.find(address);
    const auto now = service().scheduler().now();
    if (done_ || now < heardPauseUntil_) return false;
    if (reason != reasons_.end() && reason->second.step != FailedStep::NoAnswer) return false;
    heardPauseUntil_ = now + kHeardPause;
    return true;
}

void BluezDialer::begin() {
    if (const BluezProblem problem = ownProblem(); !problem.text.empty()) return fail(problem);
    chooseFrom(candidates());
    tryNext();
}

// Why no device can be tried.
BluezProblem BluezDialer::ownProblem() const {
    if (!service().problem().text.empty()) return service().problem();
    return problemOfAdapters(service().objects());
}

// The devices that can be tried now, by address; each once, however many adapters know it.
std::vector<BluezDialer::Candidate> BluezDialer::candidates() const {
    std::map<std::string, Candidate> all;
    const BluezObjects& objects = service().objects();
    for (const auto& [path, device] : objects.devices) {
        if (device.address.empty() || !problemOfDevice(device, objects).text.empty()) continue;
        if (address_.empty() || device.address == address_)
            all.try_emplace(device.address, Candidate{device.address, path});
    }
    std::vector<Candidate> list;
    list.reserve(all.size());
    for (auto& [address, candidate] : all) list.push_back(std::move(candidate));
    return list;
}

void BluezDialer::chooseFrom(std::vector<Candidate> candidates) {
    const auto isLast = [last = lastUsedAddress()](const Candidate& one) { return one.address == last; };
    const auto last = std::find_if(candidates.begin(), candidates.end(), isLast);
    const bool hasLast = last != candidates.end();
    if (hasLast) {
        queue_.push_back(*last);
        candidates.erase(last);
    }
    const auto now = service().scheduler().now();
    std::vector<Candidate> others;
    for (const Candidate& one : candidates) {
        const auto until = leftAloneUntil_.find(one.address);
        if (until == leftAloneUntil_.end() || until->second <= now) others.push_back(one);
    }
    // Where there is nothing else, what was no tester may have become one.
    if (!hasLast && others.empty()) others = std::move(candidates);
    const auto next = std::find_if(others.begin(), others.end(),
                                   [this](const Candidate& one) { return one.address > turn_; });
    std::rotate(others.begin(), next, others.end());
    for (Candidate& other : others) {
        if (queue_.size() == 2) break;
        if (hasLast) other.limit = kOtherLimit;
        queue_.push_back(other);
    }
    // One that is connected and silent must not keep the others from being heard.
    if (hasLast && queue_.size() == 2 && queue_.front().address == silent_)
        std::swap(queue_.front(), queue_.back());
}

void BluezDialer::tryNext() {
    if (queue_.empty()) {
        const BluezProblem own = ownProblem();
        return fail(own.text.empty() ? problemOfAll() : own);
    }
    current_ = std::move(queue_.front());
    queue_.pop_front();
    if (current_.address != lastUsedAddress()) turn_ = current_.address;
    limit_ = service().scheduler().callAfter(current_.limit, [this] {
        attempt_.reset();
        tried({nullptr, noAnswerWithin(current_.limit)});
    });
    attempt_ =
        profile_->connect(current_.path, [this](BluezProfile::Result result) { tried(std::move(result)); });
}

void BluezDialer::tried(BluezProfile::Result result) {
    limit_.cancel();
    attempt_.reset();
    if (!result.line) {
        reasons_[current_.address] = std::move(result.problem);
        return tryNext();
    }
    queue_.clear();
    reasons_.erase(current_.address);
    opened_ = current_.address;
    const auto& devices = service().objects().devices;
    const auto device = devices.find(current_.path);
    std::exchange(done_, nullptr)({std::make_unique<DescriptorChannel>(std::move(result.line)),
                                   FailedStep::None,
                                   {},
                                   device != devices.end() ? device->second.name : current_.address});
}

void BluezDialer::fail(const BluezProblem& problem) {
    std::exchange(done_, nullptr)({nullptr, problem.step, problem.text});
}

BluezProblem BluezDialer::problemOfAll() const {
    // By address; of a device that several adapters know, what can be said of the best of them.
    struct Told {
        std::string name;
        BluezProblem problem;
    };
    std::map<std::string, Told> all;
    const BluezObjects& objects = service().objects();
    for (const auto& [path, device] : objects.devices) {
        const bool asked = address_.empty() ? device.paired && device.serialPort : device.address == address_;
        if (!asked || device.address.empty()) continue;
        BluezProblem problem = problemOfDevice(device, objects);
        if (problem.text.empty()) {
            const auto reason = reasons_.find(device.address);
            problem = reason != reasons_.end() ? reason->second
                                               : BluezProblem{FailedStep::None, "its turn has yet to come"};
            all.insert_or_assign(device.address, Told{device.name, problem});
        } else {
            all.try_emplace(device.address, Told{device.name, problem});
        }
    }
    if (all.empty()) return address_.empty() ? noDevice() : unknownDevice();

    BluezProblem sum;
    std::vector<Told> told;
    const auto last = all.find(lastUsedAddress());
    const bool hasLast = last != all.end();
    if (hasLast) {
        sum.step = last->second.problem.step;
        told.push_back(std::move(last->second));
        all.erase(last);
    }
    for (auto& [address, one] : all) {
        // Where none of them is known for a tester, that of the one that got furthest.
        if (!hasLast) sum.step = std::max(sum.step, one.problem.step);
        told.push_back(std::move(one));
    }
    for (std::size_t i = 0; i < std::min(told.size(), kMostNamed); ++i)
        sum.text += (i > 0 ? "; " : "") + told[i].name + ": " + told[i].problem.text;
    if (told.size() > kMostNamed) sum.text += "; and " + std::to_string(told.size() - kMostNamed) + " more";
    return sum;
}

std::string BluezDialer::lastUsedAddress() const {
    if (lastUsed_.read) {
        const std::string uri = lastUsed_.read();
        const std::string_view scheme = kScheme;
        if (uri.starts_with(scheme)) return bluetoothAddress(uri.substr(scheme.size()));
    }
    return lastUsedHere_;
}

}  // namespace kestrix::platform
