#include "shell/TesterChoice.h"

#include "storage/FolderChoice.h"

namespace kestrix::shell {
namespace {

const QString kTester = QStringLiteral("tester");

}  // namespace

TesterChoice testerAtStart(const std::vector<std::string>& named, const platform::UserDefaults& settings,
                           bool folderWasNamed, const std::string& standard) {
    if (!named.empty()) return {named, TesterChoice::By::CommandLine};
    const std::string chosen = settings.stringForKey(kTester).toStdString();
    const bool fits = folderWasNamed || storage::readingsOf(chosen) == storage::Readings::Measured;
    if (!chosen.empty() && fits) return {{chosen}, TesterChoice::By::Settings};
    if (standard.empty()) return {};
    return {{standard}, TesterChoice::By::Nobody};
}

void keepTester(platform::UserDefaults& settings, const std::string& uri) {
    settings.setString(kTester, QString::fromStdString(uri));
}

}  // namespace kestrix::shell
