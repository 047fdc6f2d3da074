#include "apps/kestrix-cli/ExportOutput.h"

#include <unistd.h>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include "apps/kestrix-cli/Runner.h"

namespace kestrix::cli {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string reasonOf(int error) {
    return std::generic_category().message(error);
}

Ending copy(Runner& runner, std::FILE& from) {
    std::array<char, 65'536> piece;
    std::rewind(&from);
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), &from)) {
        runner.output().write({piece.data(), count});
        if (!runner.flush(runner.output())) return failed(history::cutShort().reason);
        if (!runner.output().good()) return done();  // the runner says why
    }
    return std::ferror(&from) != 0 ? failed(reasonOf(errno)) : done();
}

// The database waits for nobody's reader: the record is read to its end first, into a file without a name.
Ending exportToStandardOutput(Runner& runner, const history::ExportedRecord& record,
                              const history::ExportFormat& format) {
    if (!format.isForTerminals && isatty(STDOUT_FILENO) == 1)
        return failed("standard output is a terminal, which raw bytes would garble");
    const std::unique_ptr<std::FILE, CloseFile> file(std::tmpfile());
    if (!file) return failed("there is no room for a temporary file: " + reasonOf(errno));
    const storage::Outcome written = history::writeRecord(format, record, [&](std::string_view bytes) {
        const bool all = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
        return all ? storage::Outcome{} : storage::Outcome{false, reasonOf(errno), 0};
    });
    if (!written.done) return failed(written.reason);
    if (std::fflush(file.get()) != 0) return failed(reasonOf(errno));
    return copy(runner, *file);
}

}  // namespace

Ending exportToOutput(Runner& runner, const history::ExportedRecord& record,
                      const history::ExportFormat& format, const std::string& output) {
    if (output == "-") return exportToStandardOutput(runner, record, format);
    if (output.empty() || output.ends_with('/')) return wrongUsage("--output '" + output + "' names no file");
    if (QString::fromStdString(output).toStdString() != output)
        return wrongUsage("--output names a file in bytes that are no UTF-8");
    const storage::Outcome written =
        history::exportIntoNewFile(record, format, QString::fromStdString(output));
    return written.done ? done() : failed(output + ": " + written.reason);
}

Ending exportToFolder(Runner& runner, const history::ExportedRecord& record,
                      const history::ExportFormat& format, const platform::DocumentsFolder& folder) {
    const auto nameOf = [&](int number) {
        return QString::fromStdString(record.timeStamp + (number > 1 ? "-" + std::to_string(number) : "") +
                                      format.extension);
    };
    const auto isThere = [](const QString& path) {
        const QFileInfo file(path);
        return file.exists() || file.isSymLink();
    };
    if (const std::string why = folder.whyKeptOut(); !why.empty()) return failed(why);
    int number = 1;
    while (isThere(folder.filePath(nameOf(number)))) ++number;
    const QString path = folder.filePath(nameOf(number));
    const storage::Outcome written = history::exportIntoNewFile(record, format, path);
    if (!written.done) return failed(written.reason);
    runner.output().line(path.toStdString());
    return done();
}

}  // namespace kestrix::cli
