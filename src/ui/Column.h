#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace kestrix::ui {

// One column of a table. The headers, the cells, the lines between them, the height of a row and the tests
// all read this. A line one point wide stands between a column and the next where the next one begins one
// point behind its end.
struct Column {
    Q_GADGET
    Q_PROPERTY(QString role MEMBER role CONSTANT FINAL)
    Q_PROPERTY(QString title MEMBER title CONSTANT FINAL)
    Q_PROPERTY(double x MEMBER x CONSTANT FINAL)
    Q_PROPERTY(double width MEMBER width CONSTANT FINAL)
    Q_PROPERTY(int fontSize MEMBER fontSize CONSTANT FINAL)
    Q_PROPERTY(int alignment MEMBER alignment CONSTANT FINAL)
    Q_PROPERTY(bool asHeader MEMBER asHeader CONSTANT FINAL)

  public:
    QString role;      // the key of its texts in a row
    QString title;     // above it, in the user's language
    double x = 0;      // in points of the stage
    double width = 0;  // of the text
    int fontSize = 8;  // in points; a text that has no room is drawn smaller, down to the half
    int alignment = Qt::AlignHCenter;
    bool asHeader = false;  // white on the headers' ground
};

using Columns = QList<Column>;

}  // namespace kestrix::ui
