#pragma once

#include <QString>

#include <chrono>
#include <string>
#include <string_view>

#include "history/ExportedRecord.h"
#include "platform/DocumentsFolder.h"

// A saved test record as a file, for the screen and the command line.
namespace kestrix::history {

// A form in which a record is written. Those that need fonts stand elsewhere (history/PdfReport.h), because
// they bring the libraries that draw along.
struct ExportFormat {
    const char* extension;  // of the file's name, with its point
    const char* mediaType;  // as an attachment (platform/Mail.h)
    bool isForTerminals;    // lines of UTF-8
    storage::Outcome (*write)(const ExportedRecord&, const ExportSink&);
};

// Five blanks between the fields, UTF-16: history/TextExport.h.
extern const ExportFormat kTextFormat;
// RFC 4180: history/CsvExport.h.
extern const ExportFormat kCsvFormat;
// history/JsonExport.h.
extern const ExportFormat kJsonFormat;

// Writes the record in this format. Of one of the database all is read together, as it is then: nobody writes
// to it until it is read, so that the sink must not wait.
storage::Outcome writeRecord(const ExportFormat& format, const ExportedRecord& record,
                             const ExportSink& sink);

// The moment as "yyyyMMddHHmmss", in the machine's time zone or the one that is named ("Europe/Berlin").
std::string getExportTime(std::chrono::system_clock::time_point moment, std::string_view zone = {});

struct ExportedFile {
    QString path;  // also of one that could not be written
    storage::Outcome outcome;
};

// Writes <timeStamp><extension> into the documents folder; one of the same second is replaced. A failure is
// told in one log line as well, and leaves no file. The stamp is 14 digits, or nothing is written.
ExportedFile exportIntoFolder(const ExportedRecord& record, const ExportFormat& format,
                              const platform::DocumentsFolder& folder);

// The same into a file that does not exist yet, without a line in the log.
storage::Outcome exportIntoNewFile(const ExportedRecord& record, const ExportFormat& format,
                                   const QString& path);

}  // namespace kestrix::history
