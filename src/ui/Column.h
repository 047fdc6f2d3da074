#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace kestrix::ui {

// One column of a table. The headers, the cells, the lines between them, the height of a row and the tests
// all read this. A line one point wide stands between a column and the next, so that a column begins one
// point behind the end of the one before.
struct Column {
    Q_GADGET
    Q_PROPERTY(QString role MEMBER role CONSTANT FINAL)
    Q_PROPERTY(QString title MEMBER title CONSTANT FINAL)
    Q_PROPERTY(double x MEMBER x CONSTANT FINAL)
    Q_PROPERTY(double width MEMBER width CONSTANT FINAL)

  public:
    QString role;      // the key of its texts in a row
    QString title;     // above it, in the user's language
    double x = 0;      // in points of the stage
    double width = 0;  // of the text
};

using Columns = QList<Column>;

}  // namespace kestrix::ui
