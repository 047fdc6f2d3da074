#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "storage/EvidenceHash.h"
#include "storage/MeasureData.h"
#include "storage/RecordData.h"

// The example of docs/database.md.
namespace kestrix::storage {

inline std::string bytesOfHex(const std::string& digits) {
    std::string bytes;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    return bytes;
}

// What stands behind this name in the worked example of docs/database.md.
inline std::string exampled(const std::string& name) {
    std::ostringstream document;
    document << std::ifstream(KESTRIX_SOURCE_DIR "/docs/database.md").rdbuf();
    const std::string text = document.str();
    std::smatch found;
    const std::regex row("\\n\\| " + name + " \\| `([^`]*)` \\|");
    EXPECT_TRUE(std::regex_search(text, found, row)) << name;
    return found.empty() ? "" : found[1].str();
}

inline MeasureData exampleMeasurement() {
    MeasureData measure;
    measure.dataName = exampled("dataName");
    measure.function = exampled("function");
    measure.parameters = exampled("parameters");
    measure.result = exampled("result");
    measure.dateTime = exampled("dateTime");
    measure.comments = " ";
    return measure;
}

inline EvidenceRow exampleRow() {
    EvidenceRow row;
    row.place = 1;
    row.identity = exampled("identity");
    row.dataId = 1;
    row.measurement = digestOf(exampleMeasurement());
    row.evidence.frame = bytesOfHex(exampled("frame"));
    row.evidence.equalFrames = 3;
    row.evidence.source = exampled("source");
    row.evidence.accessory = exampled("accessory");
    row.moment = {std::stoll(exampled("utc")), std::stoi(exampled("utcOffset")),
                  std::stoll(exampled("sinceBoot"))};
    row.program = exampled("program");
    return row;
}

// With the values of docs/export.md.
inline RecordData exampleRecord() {
    RecordData record;
    record.recordId = 3;
    record.projectName = "House 7";
    record.company = "Volt & Sons";
    record.operators = "Jo";
    record.addres = "7 Main Street";
    record.startTime = "2026-03-04 05:06:07";
    record.endTime = "2026-03-04 ";
    record.dates = "05:06:07";
    record.samples = 1;
    record.serial = "SN 1";
    return record;
}

}  // namespace kestrix::storage
