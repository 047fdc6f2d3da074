#include "apps/kestrix-cli/RowJson.h"

#include <QString>

#include <string_view>

#include "apps/kestrix-cli/JsonText.h"

namespace kestrix::cli {
namespace {

class JsonLine {
  public:
    JsonLine& field(const char* column, std::int64_t value) {
        begin(column);
        line_ += std::to_string(value);
        return *this;
    }
    JsonLine& field(const char* column, const std::string& value) {
        begin(column);
        appendJsonText(line_, QString::fromStdString(value).toStdString());
        return *this;
    }
    std::string end() { return line_ + "}\n"; }

  private:
    void begin(const char* column) {
        line_ += line_.empty() ? "{\"" : ",\"";
        line_ += column;
        line_ += "\":";
    }
    std::string line_;
};

}  // namespace

std::string jsonLineOf(const storage::RecordData& record) {
    return JsonLine()
        .field("dataId", record.recordId)
        .field("company", record.company)
        .field("operators", record.operators)
        .field("addres", record.addres)
        .field("startTime", record.startTime)
        .field("endTime", record.endTime)
        .field("dates", record.dates)
        .field("samples", record.samples)
        .field("serial", record.serial)
        .field("projectname", record.projectName)
        .end();
}

std::string jsonLineOf(const storage::MeasureData& measure) {
    return JsonLine()
        .field("dataId", measure.dataId)
        .field("recordId", measure.recordId)
        .field("dataName", measure.dataName)
        .field("function", measure.function)
        .field("parameters", measure.parameters)
        .field("result", measure.result)
        .field("dateTime", measure.dateTime)
        .field("comments", measure.comments)
        .field("recordName", measure.recordName)
        .end();
}

}  // namespace kestrix::cli
