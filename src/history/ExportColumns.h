#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "storage/MeasureData.h"
#include "storage/RecordData.h"

// The columns of the formats for other programs, under the names that they have in the database.
namespace kestrix::history {

enum class ExportColumnKind : std::uint8_t { Text, Time };

// A text or, where that is null, a number.
template <class Row>
struct ExportColumn {
    const char* name;
    std::string Row::*text;
    std::int64_t Row::*number = nullptr;
    ExportColumnKind kind = ExportColumnKind::Text;
};

inline constexpr std::array<ExportColumn<storage::RecordData>, 9> kRecordColumns{{
    {"projectname", &storage::RecordData::projectName},
    {"company", &storage::RecordData::company},
    {"addres", &storage::RecordData::addres},
    {"operators", &storage::RecordData::operators},
    {"startTime", &storage::RecordData::startTime, nullptr, ExportColumnKind::Time},
    {"endTime", &storage::RecordData::endTime},
    {"dates", &storage::RecordData::dates},
    {"serial", &storage::RecordData::serial},
    {"samples", nullptr, &storage::RecordData::samples},
}};

inline constexpr std::array<ExportColumn<storage::MeasureData>, 8> kMeasureColumns{{
    {"dataId", nullptr, &storage::MeasureData::dataId},
    {"dataName", &storage::MeasureData::dataName},
    {"function", &storage::MeasureData::function},
    {"parameters", &storage::MeasureData::parameters},
    {"result", &storage::MeasureData::result},
    {"dateTime", &storage::MeasureData::dateTime, nullptr, ExportColumnKind::Time},
    {"comments", &storage::MeasureData::comments},
    {"recordName", &storage::MeasureData::recordName},
}};

// "2026-03-04 05:06:07" as ISO 8601 writes it, "2026-03-04T05:06:07". What is no such time is left as it is.
std::string isoTime(std::string_view text);

// The text with U+FFFD for what is no UTF-8.
std::string validUtf8(std::string_view text);

// What the column holds, as UTF-8. Of a column with a text.
template <class Row>
std::string exportedText(const ExportColumn<Row>& column, const Row& row) {
    const std::string& text = row.*column.text;
    return validUtf8(column.kind == ExportColumnKind::Time ? isoTime(text) : text);
}

}  // namespace kestrix::history
