#include "history/Export.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <optional>

#include "history/CsvExport.h"
#include "history/ExportFile.h"
#include "history/ExportLog.h"
#include "history/JsonExport.h"
#include "history/TextExport.h"
#include "platform/DateText.h"
#include "storage/Snapshot.h"

namespace kestrix::history {

Q_LOGGING_CATEGORY(lcExport, "kestrix.export", QtWarningMsg)
Q_LOGGING_CATEGORY(lcReport, "kestrix.report", QtWarningMsg)

namespace {

constexpr std::size_t kStampLength = 14;

// What names a file stays in its folder.
bool isStamp(std::string_view text) {
    return text.size() == kStampLength &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

const ExportFormat kTextFormat{".csv", "csv", false, writeText};
const ExportFormat kCsvFormat{".csv", "csv", true, writeCsv};
const ExportFormat kJsonFormat{".json", "application/json", true, writeJson};

storage::Outcome writeRecord(const ExportFormat& format, const ExportedRecord& record,
                             const ExportSink& sink) {
    if (!record.databaseId) return format.write(record, sink);
    std::optional<storage::Snapshot> together(*record.evidence);
    if (!together->outcome().done) return together->outcome();
    ExportedRecord now = record;
    now.allIsRead = [&together] { together.reset(); };
    storage::Outcome found = findExportedRecord(*record.evidence, *record.databaseId, now);
    return found.done ? format.write(now, sink) : found;
}

std::string getExportTime(std::chrono::system_clock::time_point moment, std::string_view zone) {
    return platform::DateText(platform::kStampPattern, {}, zone).text(moment);
}

ExportedFile exportIntoFolder(const ExportedRecord& record, const ExportFormat& format,
                              const platform::DocumentsFolder& folder) {
    ExportedFile file;
    const std::string name = record.timeStamp + format.extension;
    if (isStamp(record.timeStamp)) {
        file.path = folder.filePath(QString::fromStdString(name));
        file.outcome = writeFileInFolder(
            folder, name, [&](const ExportSink& sink) { return writeRecord(format, record, sink); });
    } else {
        const QString why = QCoreApplication::translate("Export", "the time of the export cannot be written");
        file.outcome = {false, why.toStdString(), 0};
    }
    if (!file.outcome.done) {
        qCWarning(lcExport).noquote()
            << "the test record was not exported:" << QString::fromStdString(file.outcome.reason);
    }
    return file;
}

storage::Outcome exportIntoNewFile(const ExportedRecord& record, const ExportFormat& format,
                                   const QString& path) {
    return writeNewFile(path, [&](const ExportSink& sink) { return writeRecord(format, record, sink); });
}

}  // namespace kestrix::history
