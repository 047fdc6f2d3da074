#include "ui/TesterWords.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

#include "platform/SearchAdvice.h"
#include "platform/SourcePlace.h"

namespace kestrix::ui {
namespace {

using platform::AccessorySource;
using platform::SearchState;

// The context of the translations.
struct Tester {
    Q_DECLARE_TR_FUNCTIONS(Tester)
};

QString nameOf(const AccessorySource& source) {
    const std::string& peer = source.peerName();
    return QString::fromStdString(peer.empty() ? platform::placeOf(source.uri()) : peer);
}

QString wantedOf(const AccessorySource& source) {
    const bool any =
        source.peerName().empty() && platform::placeOf(source.uri()) == platform::placeOf("bluetooth:");
    return any ? Tester::tr("any paired tester") : nameOf(source);
}

QString stateOf(const AccessorySource& source) {
    switch (source.state()) {
        case SearchState::Present:
            return Tester::tr("Connected");
        case SearchState::Listening:
            return Tester::tr("Waiting for a reading");
        case SearchState::Stopped:
            return Tester::tr("Not looked for");
        case SearchState::Waiting:
        case SearchState::Dialing:
            break;
    }
    return Tester::tr("Looking for it");
}

bool hasFailed(const std::unique_ptr<AccessorySource>& source) {
    return source->failedStep() != platform::FailedStep::None;
}

}  // namespace

TesterWords testerWords(const AccessorySource& source) {
    TesterWords words{.name = nameOf(source), .wanted = wantedOf(source), .state = stateOf(source)};
    words.connected = source.state() == SearchState::Present;
    if (words.connected) return words;
    words.problem = QString::fromStdString(source.problem());
    words.advice = QString::fromStdString(platform::adviceFor(source.failedStep(), source.uri()));
    return words;
}

TesterWords testerWords(const platform::AccessoryManager& accessories) {
    const auto connected = accessories.connectedAccessories();
    if (!connected.empty())
        return {.name = QString::fromStdString(connected.front()->name),
                .wanted = {},
                .state = Tester::tr("Connected"),
                .problem = {},
                .advice = {},
                .connected = true};
    const auto& sources = accessories.sources();
    if (sources.empty())
        return {
            .name = {}, .wanted = {}, .state = Tester::tr("No tester chosen"), .problem = {}, .advice = {}};
    const auto failed = std::find_if(sources.begin(), sources.end(), hasFailed);
    TesterWords words = testerWords(failed == sources.end() ? *sources.front() : **failed);
    if (std::exchange(words.connected, false)) words.state = Tester::tr("Looking for it");  // not announced
    if (sources.size() > 1) {
        for (QString* const name : {&words.name, &words.wanted})
            *name = Tester::tr("%1 and %2 more").arg(*name).arg(sources.size() - 1);
    }
    return words;
}

QString whyNotConnected(const TesterWords& words) {
    if (words.connected) return {};
    if (words.name.isEmpty()) return Tester::tr("Choose the tester: press the title above.");
    if (words.problem.isEmpty()) return Tester::tr("Looking for %1").arg(words.wanted);
    const QString why = Tester::tr("Looking for %1: %2").arg(words.wanted, words.problem);
    return words.advice.isEmpty() ? why : why + u'\n' + words.advice;
}

}  // namespace kestrix::ui
