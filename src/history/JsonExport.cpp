#include "history/JsonExport.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "history/ExportColumns.h"
#include "history/ExportPieces.h"
#include "storage/EvidenceHash.h"

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

void appendEvidence(std::string& json, const std::optional<storage::EvidenceRow>& recorded) {
    if (!recorded) {
        json += "null";
        return;
    }
    const storage::EvidenceRow& row = *recorded;
    json += "{\"identity\":" + quoted(row.identity) + ",\"place\":" + std::to_string(row.place);
    json += ",\"frame\":\"" + storage::hexOf(row.evidence.frame) + "\",\"tripTimes\":{";
    const char* comma = "";
    for (std::size_t i = 0; i < row.evidence.tripTimeFrames.size(); ++i) {
        const std::string& frame = row.evidence.tripTimeFrames[i];
        if (frame.empty()) continue;
        json += std::exchange(comma, ",");
        json += '"' + std::to_string(i + 1) + "\":\"" + storage::hexOf(frame) + '"';
    }
    json += "},\"hash\":\"" + storage::hexOf(row.hash) + "\"}";
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
    std::optional<storage::EvidenceRow> recorded;
    storage::Outcome known;
    storage::Outcome read = eachMeasurement(record, [&](const storage::MeasureData& measure) {
        pieces.bytes() += std::exchange(separator, ",\n");
        pieces.bytes() += "{\"recordId\":" + std::to_string(measure.recordId) + ',';
        appendFields(pieces.bytes(), kMeasureColumns, measure);
        known = findRecorded(record, measure.dataId, recorded);
        pieces.bytes() += ",\"evidence\":";
        appendEvidence(pieces.bytes(), recorded);
        pieces.bytes() += '}';
        return known.done && pieces.pass();
    });
    if (!known.done) return known;
    if (!read.done) return read;
    pieces.bytes() += "\n]}\n";
    return pieces.end();
}

}  // namespace kestrix::history
