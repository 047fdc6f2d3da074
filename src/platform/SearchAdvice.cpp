#include "platform/SearchAdvice.h"

#include <QCoreApplication>

#include <string_view>

#include "platform/AccessoryUri.h"

namespace kestrix::platform {
namespace {

struct Advice {
    FailedStep step;
    std::string_view scheme;  // empty: any other
    const char* text;
};

// The first row that fits. What can be wrong with Bluetooth itself is so various that the problem's own line
// says what to do.
constexpr Advice kAdvice[] = {
    {FailedStep::Adapter, "bluetooth", ""},
    {FailedStep::Pairing, "bluetooth", ""},
    {FailedStep::Missing, "bluetooth", ""},
    {FailedStep::Rights, "bluetooth", ""},
    {FailedStep::Busy, "bluetooth", ""},
    {FailedStep::Refused, "bluetooth", ""},
    {FailedStep::NoAnswer, "bluetooth", ""},
    {FailedStep::Other, "bluetooth", ""},
    {FailedStep::Missing, "serial", QT_TRANSLATE_NOOP("SearchAdvice", "Plug the cable in.")},
    {FailedStep::Missing, "tcp", QT_TRANSLATE_NOOP("SearchAdvice", "Check the address.")},
    {FailedStep::Missing, "replay", QT_TRANSLATE_NOOP("SearchAdvice", "Choose a file that is there.")},
    {FailedStep::Missing, "", QT_TRANSLATE_NOOP("SearchAdvice", "Choose the tester again.")},
    {FailedStep::Rights, "serial",
     QT_TRANSLATE_NOOP("SearchAdvice", "Ask for the right to use serial ports (group dialout).")},
    {FailedStep::Rights, "", QT_TRANSLATE_NOOP("SearchAdvice", "Ask who looks after this computer for it.")},
    {FailedStep::Busy, "", QT_TRANSLATE_NOOP("SearchAdvice", "Close the other program that uses it.")},
    {FailedStep::Refused, "tcp",
     QT_TRANSLATE_NOOP("SearchAdvice", "Start the other side, and check the port number.")},
    {FailedStep::Refused, "", QT_TRANSLATE_NOOP("SearchAdvice", "Switch the tester off and on again.")},
    {FailedStep::NoAnswer, "tcp", QT_TRANSLATE_NOOP("SearchAdvice", "Check the address and the network.")},
    {FailedStep::NoAnswer, "", QT_TRANSLATE_NOOP("SearchAdvice", "Switch the tester on and bring it near.")},
    {FailedStep::NoBytes, "", QT_TRANSLATE_NOOP("SearchAdvice", "Switch the tester on.")},
    {FailedStep::NoFrames, "serial",
     QT_TRANSLATE_NOOP("SearchAdvice", "Check that this is the tester's port, and its baud rate.")},
    {FailedStep::NoFrames, "", QT_TRANSLATE_NOOP("SearchAdvice", "Check that this is the tester.")},
    {FailedStep::Ended, "replay",
     QT_TRANSLATE_NOOP("SearchAdvice", "The capture is played again from its start.")},
    {FailedStep::Ended, "",
     QT_TRANSLATE_NOOP("SearchAdvice",
                       "Switch the tester on and bring it near; it is looked for again by itself.")},
    {FailedStep::Other, "", QT_TRANSLATE_NOOP("SearchAdvice", "Choose the tester again.")},
};

}  // namespace

std::string adviceFor(FailedStep step, const std::string& uri) {
    const auto parsed = parseAccessoryUri(uri);
    for (const Advice& row : kAdvice) {
        if (row.step != step || (!row.scheme.empty() && (!parsed || row.scheme != parsed->scheme))) continue;
        if (*row.text == '\0') return {};
        return QCoreApplication::translate("SearchAdvice", row.text).toStdString();
    }
    return {};
}

}  // namespace kestrix::platform
