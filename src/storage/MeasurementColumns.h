#pragma once

#include <QStringList>

#include "storage/MeasureData.h"
#include "ui/Column.h"

namespace kestrix::storage {

// The columns in which every table shows measurements, in the user's language. Their roles are the keys of a
// row.
ui::Columns measurementColumns();

// What stands in them.
QStringList measurementTexts(const MeasureData& measure);

}  // namespace kestrix::storage
