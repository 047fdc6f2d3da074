#include "apps/common/PrintableLog.h"

#include <QString>

#include <cstdio>
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
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
}

void writeLine(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const QString line = qFormatLogMessage(type, context, text);
    if (!line.isNull()) theSink()(printable(line.toStdString()));
}

}  // namespace

void installPrintableLog(Sink sink) {
    theSink() = sink ? std::move(sink) : Sink(writeToStandardError);
    qInstallMessageHandler(writeLine);
}

}  // namespace kestrix::app
