#pragma once

#include <string>

#include "ui/ListModel.h"

namespace kestrix::live {

// One row of the session list, under the list's own keys. Texts are UTF-8.
struct SessionRow {
    std::string DataName;
    std::string Function;
    std::string Parameters;
    std::string Result;
    std::string DateTime;
    std::string Comments;
};

// The measurements of this session, oldest first. The roles of its texts are the keys of a row.
class SessionList : public kestrix::ui::ListModel {
    Q_OBJECT

  public:
    SessionList();

    // height: of the row, in points.
    void append(const SessionRow& row, double height);

    // What the row holds, as it was appended.
    SessionRow row(int number) const;
};

}  // namespace kestrix::live
