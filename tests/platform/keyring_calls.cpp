// Asks the desktop's keyring as its input says, line by line: "find NAME", "keep NAME PASSWORD", "forget
// NAME". Says the answers, "found PASSWORD", "none", "kept", "forgotten" or "problem ...", and to "turn" at
// once "turned", while the event loop goes round. Ends with its input.
#include <unistd.h>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <sstream>
#include <string>

#include "platform/SecretKeyring.h"

namespace {

using kestrix::platform::SecretKeyring;

void say(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

void run(SecretKeyring& keyring, const std::string& line) {
    std::istringstream words(line);
    std::string verb, name, password;
    words >> verb >> name >> password;
    const auto sayDone = [](const char* done) {
        return [done](const std::string& problem) { say(problem.empty() ? done : "problem " + problem); };
    };
    if (verb == "turn") {
        say("turned");
    } else if (verb == "keep") {
        keyring.keep(name, password, sayDone("kept"));
    } else if (verb == "forget") {
        keyring.forget(name, sayDone("forgotten"));
    } else if (verb == "find") {
        keyring.find(name, [](const std::optional<std::string>& found, const std::string& problem) {
            say(!problem.empty() ? "problem " + problem : found ? "found " + *found : std::string("none"));
        });
    }
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    SecretKeyring keyring;
    std::string input;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        char bytes[4096];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) return QCoreApplication::quit();
        input.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end = input.find('\n'); end != std::string::npos; end = input.find('\n')) {
            run(keyring, input.substr(0, end));
            input.erase(0, end + 1);
        }
    });
    return QCoreApplication::exec();
}
