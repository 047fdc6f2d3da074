#pragma once

#include <string>
#include <vector>

// Where everything stands on the report's one page, as plain data. In points of 1/72 inch from the page's
// left top: x to the right, y downwards. A character is a code point of UTF-8 (of bytes that are none, each
// one), and no text is split inside one.
namespace kestrix::history {

// The lines of a report, without their line ends.
struct ReportLines {
    std::string recordTitle;    // empty without a record
    std::string recordContent;  // the same
    std::string measureTitle;
    std::vector<std::string> rows;  // one for each measurement
};

struct ReportText {
    double x = 0;  // of its left top corner
    double y = 0;
    int size = 0;  // of the font
    std::string text;

    bool operator==(const ReportText&) const = default;
};

struct ReportRectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const ReportRectangle&) const = default;
};

struct ReportPage {
    int width = 0;
    int height = 0;
    ReportRectangle border;         // stroked, 1 point wide
    double rulesLeft = 0;           // of each rule, which is 1 point thick
    double rulesRight = 0;          //
    std::vector<double> rules;      // y of each
    std::vector<ReportText> texts;  // none is empty
};

// How high the page of 20 and more rows is: 120, and for each row 30 when it is longer than 170 characters,
// else 20.
int getPDFHeight(const std::vector<std::string>& rows);

// The page. Rows wrap from 167 characters on, and only once: with rows of 167 to 170 the last rules run past
// the border, and what does not fit into a second line runs past the page. A record line that comes to
// exactly 166 units (two for a character of three bytes, one for any other) is split before the character
// that makes it 166.
ReportPage layOutReport(const ReportLines& lines);

}  // namespace kestrix::history
