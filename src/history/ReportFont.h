#pragma once

#include <QFont>
#include <QString>

#include <map>
#include <set>
#include <string_view>

class QPaintDevice;

namespace kestrix::history {

// The font of one report, and what it cannot show.
class ReportFont {
  public:
    struct Size {
        QFont font;
        double ascent = 0;  // of the text's top above its base line, in dots
    };

    // dots: of the device, a point.
    ReportFont(QPaintDevice& device, int dots) : device_(device), dots_(dots) {}

    // points: how large it is.
    const Size& ofSize(int points);

    // The text as it is drawn: what moves a printer's head (line feed, tab) is a blank; what turns the
    // characters behind it round, figures too, is left out; a white square (where no font has that, a
    // question mark) stands for each character that no installed font has, and these are noted. text: UTF-8.
    QString drawable(std::string_view text);

    // One line in the log that names them, when there are any.
    void reportMissing() const;

  private:
    bool has(char32_t character);
    char32_t replacement();
    bool canShow(char32_t character);

    QPaintDevice& device_;
    int dots_;
    std::map<int, Size> sizes_;
    std::set<char32_t> seen_;  // those beyond ASCII
    std::set<char32_t> missing_;
    char32_t replacement_ = 0;  // until it is needed
};

}  // namespace kestrix::history
