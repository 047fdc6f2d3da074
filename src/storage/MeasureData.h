#pragma once

#include <cstdint>
#include <string>

namespace kestrix::storage {

// A row of the table measurefrom: one recorded measurement. Texts are UTF-8 of any length.
struct MeasureData {
    std::int64_t dataId = 0;    // identity; given by the database, not read when a measurement is added
    std::int64_t recordId = 0;  // identity of the record that it belongs to; 0: none yet
    std::string dataName;       // "S_1"
    std::string function;
    std::string parameters;
    std::string result;
    std::string dateTime;  // "YYYY-MM-dd HH:mm:ss"
    std::string comments;
    std::string recordName;  // project name of its record; empty: not saved yet

    bool operator==(const MeasureData&) const = default;
};

}  // namespace kestrix::storage
