#pragma once

#include <QString>

#include <string>
#include <vector>

#include "platform/UserDefaults.h"

namespace kestrix::shell {

// Where a window looks for testers, and who said so.
struct TesterChoice {
    enum class By { CommandLine, Settings, Nobody };

    std::vector<std::string> uris;
    By by = By::Nobody;
};

// What the command line names goes before what the user chose last in this folder, and that before the
// standard place. folderWasNamed: a folder that the user named may hold made-up readings; in his own, they
// are not looked for whatever the settings say. standard: empty: nowhere.
TesterChoice testerAtStart(const std::vector<std::string>& named, const platform::UserDefaults& settings,
                           bool folderWasNamed, const std::string& standard);

// From now on the windows on this folder look there, unless their command line names another place.
void keepTester(platform::UserDefaults& settings, const std::string& uri);

}  // namespace kestrix::shell
