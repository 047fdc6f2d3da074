#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/AccessoryListing.h"
#include "platform/AccessoryManager.h"
#include "platform/DateText.h"
#include "platform/DocumentsFolder.h"
#include "platform/MailModule.h"
#include "platform/Reachability.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"
#include "ui/Alerts.h"
#include "ui/Navigation.h"
#include "ui/Notice.h"
#include "ui/TextMeasure.h"

namespace kestrix::ui {

using platform::kStampPattern;
using platform::kTimePattern;

// What became of the choice of a tester.
struct ChosenTester {
    std::string problem{};     // why it cannot be looked for there, in one line; empty: it is
    bool otherWindow = false;  // its readings do not belong into this window's folder: another one has it
};

// What a screen may need from around it. The composition root makes it once and hands it to every screen's
// factory. Everything that it refers to outlives every screen; copying it copies the references.
struct Services {
    platform::UserDefaults& defaults;
    platform::DocumentsFolder documents;  // of the database and the exports
    platform::Scheduler& scheduler;       // of animations and of everything else that takes time
    Navigation& navigation;
    Notice& notice;
    Alerts& alerts;
    const TextMeasure& textMeasure;
    const platform::DateText& timeText;   // writes moments by kTimePattern
    const platform::DateText& stampText;  // the same by kStampPattern: the names of exported files
    std::function<std::chrono::system_clock::time_point()> now;
    platform::AccessoryManager& accessories;
    // Looks for the tester there from now on, in place of where it was looked for; what was connected goes.
    // The folder's settings keep it.
    std::function<ChosenTester(const std::string& uri)> chooseTester{};
    // Makes what shows where testers can be seen, a listing for each kind of place.
    std::function<std::vector<std::unique_ptr<platform::AccessoryListing>>()> makeListings{};
    const platform::Reachability& reachability;
    // Makes what sends a mail, and what keeps its password.
    std::function<platform::MailParts()> loadMail;
    // Has the desktop open the web page of this address; false: it cannot.
    std::function<bool(const QString& address)> openAddress;
    // How long the link waits before it closes the session of a tester that has gone. It blocks its caller.
    std::function<void(std::chrono::milliseconds)> wait;
    // Of everything that slides or rises; 0: at once.
    std::chrono::milliseconds slideDuration{300};
    bool simulated = false;  // whether no tester measures what the accessories say
};

}  // namespace kestrix::ui
