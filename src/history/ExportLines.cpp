#include "history/ExportLines.h"

#include <initializer_list>

namespace kestrix::history {

std::string RecordContent(const storage::RecordData& record) {
    std::string line;
    for (const std::string* value : {&record.projectName, &record.company, &record.addres, &record.operators,
                                     &record.startTime, &record.serial}) {
        line += *value;
        line += kSeparator;
    }
    return line += std::to_string(record.samples);
}

void appendMeasureLine(std::string& line, const storage::MeasureData& measure) {
    line += std::to_string(measure.dataId);
    for (const std::string* value :
         {&measure.dataName, &measure.function, &measure.parameters, &measure.result, &measure.dateTime}) {
        line += kSeparator;
        line += *value;
    }
}

}  // namespace kestrix::history
