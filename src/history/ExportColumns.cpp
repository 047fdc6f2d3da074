#include "history/ExportColumns.h"

#include <QString>
#include <QUtf8StringView>

#include <cstddef>

namespace kestrix::history {
namespace {

constexpr std::string_view kTimeForm = "0000-00-00 00:00:00";
constexpr std::size_t kBlank = 10;

// Two digits from `at` on.
struct TimePart {
    std::size_t at;
    int least;
    int most;
};
constexpr std::array<TimePart, 5> kTimeParts{{{5, 1, 12}, {8, 1, 31}, {11, 0, 23}, {14, 0, 59}, {17, 0, 60}}};

bool isTime(std::string_view text) {
    if (text.size() != kTimeForm.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (kTimeForm[i] == '0' ? !digit : text[i] != kTimeForm[i]) return false;
    }
    for (const auto& [at, least, most] : kTimeParts) {
        const int value = (text[at] - '0') * 10 + (text[at + 1] - '0');
        if (value < least || value > most) return false;
    }
    return true;
}

}  // namespace

std::string isoTime(std::string_view text) {
    std::string iso(text);
    if (isTime(text)) iso[kBlank] = 'T';
    return iso;
}

std::string validUtf8(std::string_view text) {
    const QUtf8StringView bytes(text.data(), static_cast<qsizetype>(text.size()));
    return bytes.isValidUtf8() ? std::string(text) : bytes.toString().toStdString();
}

}  // namespace kestrix::history
