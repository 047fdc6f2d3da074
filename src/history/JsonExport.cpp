#include "history/JsonExport.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "history/ExportColumns.h"
#include "history/ExportPieces.h"

namespace kestrix::history {
namespace {

// Never throws, whatever the library takes for valid.
std::string quoted(const std::string& text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// "name":value for each column, with commas between them.
template <class Row, std::size_t count>
void appendFields(std::string& json, const std::array<ExportColumn<Row>, count>& columns, const Row& row) {
    const char* comma = "";
    for (const ExportColumn<Row>& column : columns) {
        ((json += std::exchange(comma, ",")) += '"') += column.name;
        json += "\":";
        json +=
            column.text != nullptr ? quoted(exportedText(column, row)) : std::to_string(row.*column.number);
    }
}

}  // namespace

storage::Outcome writeJson(const ExportedRecord& record, const ExportSink& sink) {
    ExportPieces pieces(sink);
    pieces.bytes() += '{';
    if (record.record) {
        pieces.bytes() += "\"dataId\":" + std::to_string(record.record->recordId) + ',';
        appendFields(pieces.bytes(), kRecordColumns, *record.record);
        pieces.bytes() += ",\n";
    }
    pieces.bytes() += "\"measurements\":[";
    const char* separator = "\n";
    storage::Outcome read = eachMeasurement(record, [&](const storage::MeasureData& measure) {
        pieces.bytes() += std::exchange(separator, ",\n");
        pieces.bytes() += "{\"recordId\":" + std::to_string(measure.recordId) + ',';
        appendFields(pieces.bytes(), kMeasureColumns, measure);
        pieces.bytes() += '}';
        return pieces.pass();
    });
    if (!read.done) return read;
    pieces.bytes() += "\n]}\n";
    return pieces.end();
}

}  // namespace kestrix::history
