#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

#include "storage/RecordMark.h"

namespace kestrix::history {

// What a report says of the database that it was made from (history/PdfReport.h), read again.
struct ReportInformation {
    std::string problem{};  // why nothing could be read, in one line; empty: there is a mark
    storage::RecordMark mark{};
};

// pdf: the whole file, whatever it holds.
ReportInformation reportInformation(std::string_view pdf);

// The same of a file; what is no file, or larger than any report, is not read.
ReportInformation reportInformationOf(const QString& path);

}  // namespace kestrix::history
