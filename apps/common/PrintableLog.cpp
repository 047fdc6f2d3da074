#include "apps/common/PrintableLog.h"

#include <poll.h>
#include <unistd.h>
#include <QString>

#include <climits>
#include <string>
#include <utility>

#include "apps/common/PrintableText.h"

namespace kestrix::app {
namespace {

using Sink = std::function<void(std::string_view)>;

// Never destroyed: the log may be written to when the program's objects go.
Sink& theSink() {
    static auto* sink = new Sink;
    return *sink;
}

void writeToStandardError(std::string_view line) {
    static unsigned long lost = 0;
    writeUnlessFull(STDERR_FILENO, line, lost);
}

void writeLine(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const QString line = qFormatLogMessage(type, context, text);
    if (!line.isNull()) theSink()(printable(line.toStdString()));
}

}  // namespace

// A pipe or a terminal that is ready takes as much at once.
void writeUnlessFull(int descriptor, std::string_view line, unsigned long& lost) {
    constexpr std::size_t kRoomForTheCount = 64;
    pollfd end{descriptor, POLLOUT, 0};
    if (poll(&end, 1, 0) != 1 || (end.revents & POLLOUT) == 0) {
        ++lost;
        return;
    }
    std::string text = lost == 0 ? std::string() : std::to_string(std::exchange(lost, 0)) + " lines lost\n";
    text.append(line.substr(0, PIPE_BUF - kRoomForTheCount)).push_back('\n');
    [[maybe_unused]] const ssize_t written = write(descriptor, text.data(), text.size());
}

void installPrintableLog(Sink sink) {
    theSink() = sink ? std::move(sink) : Sink(writeToStandardError);
    qInstallMessageHandler(writeLine);
}

}  // namespace kestrix::app
