#pragma once

#include <string>
#include <vector>

#include "storage/RecordMark.h"

namespace kestrix::cli {

// Whether a database still says what a report says of it.
struct ReportCheck {
    std::string problem{};                // why the database could not be read, in one line
    std::vector<std::string> findings{};  // what it says otherwise: a line each
};

// Opens the file for reading only.
ReportCheck checkReport(const std::string& database, const storage::RecordMark& mark);

}  // namespace kestrix::cli
