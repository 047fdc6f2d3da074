#include "history/ReportLayout.h"

#include <cstddef>
#include <string_view>

namespace kestrix::history {
namespace {

constexpr int kPageWidth = 612;
constexpr int kLetterHeight = 792;
constexpr std::size_t kRowsOfALetter = 20;  // from so many on the page is as high as they are
constexpr int kBaseHeight = 120;
constexpr int kRowHeight = 20;
constexpr int kHighRowHeight = 30;
constexpr std::size_t kHighFrom = 171;  // characters

constexpr double kBorder = 20;  // from every edge
constexpr double kTextLeft = 30;
constexpr double kTop = 26;
constexpr double kTitleRule = 41;
constexpr double kRecordTop = 46;
constexpr double kRecordRule = 61;
constexpr double kLinePitch = 10;  // to the second line of a text
constexpr double kTextBelowRule = 5;
constexpr double kRuleBelowTitle = 20;  // from the rule above the title on
constexpr double kFirstRow = 25;        // the same
constexpr double kRuleBelowRow = 15;
constexpr double kRowPitch = 20;

constexpr int kTitleSize = 9;
constexpr int kLineSize = 7;

constexpr int kWrapUnits = 166;
constexpr std::size_t kWideBytes = 3;
constexpr std::size_t kWrapFrom = 167;  // characters
constexpr std::size_t kWrapAt = 166;

// In bytes, of the character that begins there.
std::size_t characterLength(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(at);
    const std::size_t length = first < 0xC2 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 1;
    if (at + length > text.size()) return 1;
    for (std::size_t i = at + 1; i < at + length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return 1;
    }
    return length;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); at += characterLength(text, at)) ++count;
    return count;
}

// In bytes, of the first characters.
std::size_t lengthOfCharacters(std::string_view text, std::size_t characters) {
    std::size_t at = 0;
    for (; characters > 0 && at < text.size(); --characters) at += characterLength(text, at);
    return at;
}

// In bytes, of what stands before the split of the record line; 0: there is none.
std::size_t recordSplit(std::string_view text) {
    int units = 0;
    for (std::size_t at = 0; at < text.size() && units < kWrapUnits;) {
        const std::size_t length = characterLength(text, at);
        units += length == kWideBytes ? 2 : 1;
        if (units == kWrapUnits) return at;
        at += length;
    }
    return 0;
}

class Page {
  public:
    explicit Page(ReportPage& page) : page_(page) {}

    void text(double y, int size, std::string_view text) {
        if (!text.empty()) page_.texts.push_back({kTextLeft, y, size, std::string(text)});
    }
    void twoLines(double y, std::string_view whole, std::size_t split) {
        text(y, kLineSize, whole.substr(0, split));
        text(y + kLinePitch, kLineSize, whole.substr(split));
    }
    void rule(double y) { page_.rules.push_back(y); }

  private:
    ReportPage& page_;
};

// Answers where the rule below the record stands.
double layOutRecord(Page& page, const ReportLines& lines) {
    page.text(kTop, kTitleSize, lines.recordTitle);
    page.rule(kTitleRule);
    const std::size_t split = recordSplit(lines.recordContent);
    if (split == 0)
        page.text(kRecordTop, kLineSize, lines.recordContent);
    else
        page.twoLines(kRecordTop, lines.recordContent, split);
    const double rule = kRecordRule + (split == 0 ? 0 : kLinePitch);
    page.rule(rule);
    return rule;
}

// Answers where the next row stands.
double layOutRow(Page& page, const std::string& row, double y) {
    if (characterCount(row) < kWrapFrom) {
        page.text(y, kLineSize, row);
    } else {
        page.twoLines(y, row, lengthOfCharacters(row, kWrapAt));
        y += kLinePitch;
    }
    page.rule(y + kRuleBelowRow);
    return y + kRowPitch;
}

}  // namespace

int getPDFHeight(const std::vector<std::string>& rows) {
    int height = kBaseHeight;
    for (const std::string& row : rows)
        height += characterCount(row) >= kHighFrom ? kHighRowHeight : kRowHeight;
    return height;
}

ReportPage layOutReport(const ReportLines& lines) {
    ReportPage laidOut;
    laidOut.width = kPageWidth;
    laidOut.height = lines.rows.size() < kRowsOfALetter ? kLetterHeight : getPDFHeight(lines.rows);
    laidOut.border = {kBorder, kBorder, kPageWidth - 2 * kBorder, laidOut.height - 2 * kBorder};
    laidOut.rulesLeft = kBorder;
    laidOut.rulesRight = kPageWidth - kBorder;

    Page page(laidOut);
    const double above = layOutRecord(page, lines);
    page.text(above + kTextBelowRule, kTitleSize, lines.measureTitle);
    page.rule(above + kRuleBelowTitle);
    double y = above + kFirstRow;
    for (const std::string& row : lines.rows) y = layOutRow(page, row, y);
    return laidOut;
}

}  // namespace kestrix::history
