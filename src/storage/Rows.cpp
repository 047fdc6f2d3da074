#include "storage/Rows.h"

#include <sqlite3.h>

#include <array>
#include <cstddef>

namespace kestrix::storage {
namespace {

// Into the text that is there, whose memory it may already have.
void readText(sqlite3_stmt* statement, int column, std::string& text) {
    // The text before its length: the length is that of the last conversion.
    const void* bytes = sqlite3_column_text(statement, column);
    text.clear();
    if (bytes == nullptr) return;
    text.assign(static_cast<const char*>(bytes),
                static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
}

template <class Row>
struct TextColumn {
    int column;
    std::string Row::*field;
};

constexpr std::array<TextColumn<MeasureData>, 7> kMeasureTexts{{{2, &MeasureData::dataName},
                                                                {3, &MeasureData::function},
                                                                {4, &MeasureData::parameters},
                                                                {5, &MeasureData::result},
                                                                {6, &MeasureData::dateTime},
                                                                {7, &MeasureData::comments},
                                                                {8, &MeasureData::recordName}}};

constexpr std::array<TextColumn<RecordData>, 8> kRecordTexts{{{1, &RecordData::company},
                                                              {2, &RecordData::operators},
                                                              {3, &RecordData::addres},
                                                              {4, &RecordData::startTime},
                                                              {5, &RecordData::endTime},
                                                              {6, &RecordData::dates},
                                                              {8, &RecordData::serial},
                                                              {9, &RecordData::projectName}}};

}  // namespace

void readRow(sqlite3_stmt* statement, MeasureData& measure) {
    measure.dataId = sqlite3_column_int64(statement, 0);
    measure.recordId = sqlite3_column_int64(statement, 1);
    for (const auto& [column, field] : kMeasureTexts) readText(statement, column, measure.*field);
}

void readRow(sqlite3_stmt* statement, RecordData& record) {
    record.recordId = sqlite3_column_int64(statement, 0);
    record.samples = sqlite3_column_int64(statement, 7);
    for (const auto& [column, field] : kRecordTexts) readText(statement, column, record.*field);
}

}  // namespace kestrix::storage
