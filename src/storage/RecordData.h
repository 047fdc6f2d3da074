#pragma once

#include <cstdint>
#include <string>

namespace kestrix::storage {

// A row of the table recordfrom: the header of one saved test record. Texts are UTF-8 of any length.
struct RecordData {
    std::int64_t recordId = 0;  // identity; given by the database, not read when a record is added
    std::string projectName;
    std::string company;
    std::string operators;
    std::string addres;
    std::string startTime;  // date and time of the first measurement
    std::string endTime;    // the date in startTime
    std::string dates;      // the time of day in startTime
    std::int64_t samples = 0;
    std::string serial;

    bool operator==(const RecordData&) const = default;
};

}  // namespace kestrix::storage
