#include "history/CsvExport.h"

#include <string>
#include <string_view>

#include "history/ExportColumns.h"
#include "history/ExportPieces.h"

namespace kestrix::history {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

void appendCell(std::string& row, std::string_view text) {
    // A blank at an end is quoted as well: some readers trim.
    const bool trimmed = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    if (!trimmed && text.find_first_of("\",\r\n") == std::string_view::npos) {
        row += text;
        return;
    }
    row += '"';
    for (const char c : text) {
        if (c == '"') row += '"';
        row += c;
    }
    row += '"';
}

// The cells of a row; a missing row has empty ones. Each with a comma in front.
template <class Row, std::size_t count>
void appendCells(std::string& line, const std::array<ExportColumn<Row>, count>& columns, const Row* row) {
    for (const ExportColumn<Row>& column : columns) {
        line += ',';
        if (row == nullptr) continue;
        if (column.text != nullptr)
            appendCell(line, exportedText(column, *row));
        else
            line += std::to_string(row->*column.number);
    }
}

std::string headerRow() {
    std::string line = "recordId";
    for (const auto& column : kRecordColumns) (line += ',') += column.name;
    for (const auto& column : kMeasureColumns) (line += ',') += column.name;
    return line += kLineEnd;
}

}  // namespace

storage::Outcome writeCsv(const ExportedRecord& record, const ExportSink& sink) {
    const storage::RecordData* const found = record.record ? &*record.record : nullptr;
    std::string recordCells;
    appendCells(recordCells, kRecordColumns, found);

    ExportPieces pieces(sink);
    pieces.bytes() += headerRow();
    const auto addRow = [&](std::int64_t recordId, const storage::MeasureData* measure) {
        pieces.bytes() += std::to_string(recordId);
        pieces.bytes() += recordCells;
        appendCells(pieces.bytes(), kMeasureColumns, measure);
        pieces.bytes() += kLineEnd;
        return pieces.pass();
    };
    bool any = false;
    storage::Outcome read = eachMeasurement(record, [&](const storage::MeasureData& measure) {
        any = true;
        return addRow(measure.recordId, &measure);
    });
    if (!read.done) return read;
    if (!any && found != nullptr) addRow(found->recordId, nullptr);
    return pieces.end();
}

}  // namespace kestrix::history
