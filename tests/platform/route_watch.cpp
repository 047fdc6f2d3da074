// Says whether other machines can be reached, "reachable" or "unreachable", at the start and at every change,
// and runs each line of its input as a command, saying "done" behind it; until the input ends.
#include <unistd.h>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/RouteWatcher.h"

namespace {

void say(const char* line) {
    std::puts(line);
    std::fflush(stdout);
}

void runLines(std::string& input) {
    for (std::size_t end = input.find('\n'); end != std::string::npos; end = input.find('\n')) {
        const int status = std::system(input.substr(0, end).c_str());
        say(status == 0 ? "done" : "the command failed");
        input.erase(0, end + 1);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    kestrix::platform::RouteWatcher watcher;
    const auto tell = [&watcher] { say(watcher.isReachable() ? "reachable" : "unreachable"); };
    tell();
    watcher.setChanged(tell);
    std::string input;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&input] {
        char bytes[4096];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) return QCoreApplication::quit();
        input.append(bytes, static_cast<std::size_t>(count));
        runLines(input);
    });
    return QCoreApplication::exec();
}
