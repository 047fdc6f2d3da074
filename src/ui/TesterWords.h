#pragma once

#include <QString>

#include "platform/AccessoryManager.h"

namespace kestrix::ui {

// What the screens tell of the tester: its name, its state in a word or two, and while it is not connected,
// why, and what to do about it.
struct TesterWords {
    QString name{};     // of the tester that is connected, or of where it is looked for; empty: nowhere
    QString wanted{};   // the same in the middle of a sentence
    QString state{};    // "Connected", "Looking for it"
    QString problem{};  // why it is not there, as one line; empty while nothing is known to be wrong
    QString advice{};   // what to do about it, a sentence; empty without a problem
    bool connected = false;
};

// What notices about choosing the tester are about: the newest counts.
inline QString testerMatter() {
    return QStringLiteral("tester");
}

// Of the accessory that is announced, or, while there is none, of the first source whose search has failed.
TesterWords testerWords(const platform::AccessoryManager& accessories);

// Of one source, by itself.
TesterWords testerWords(const platform::AccessorySource& source);

// Which tester is looked for and why it is not there, and in a second line what to do about it. Empty while
// it is connected.
QString whyNotConnected(const TesterWords& words);

}  // namespace kestrix::ui
