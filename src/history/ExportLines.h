#pragma once

#include <string>
#include <string_view>

#include "storage/MeasureData.h"
#include "storage/RecordData.h"

// The lines of which the text file and the PDF report consist. UTF-8, byte by byte what the database holds,
// and without a line end: the file adds it.
namespace kestrix::history {

// Between two values; between two titles it stands twice.
inline constexpr std::string_view kSeparator = "     ";

inline constexpr std::string_view RecordTitle =
    "Name          Company          Address          Operator          Date          Serial_Number          "
    "Samples";
inline constexpr std::string_view MeasureTitle =
    "NO          Data Name          Function          Parameters          Result          Date Time";

// projectName, company, addres, operators, startTime, serial, samples.
std::string RecordContent(const storage::RecordData& record);

// dataId, dataName, function, parameters, result, dateTime. Of the report it is the text of a row.
void appendMeasureLine(std::string& line, const storage::MeasureData& measure);

}  // namespace kestrix::history
