#include "storage/MeasurementColumns.h"

#include <QCoreApplication>

#include <array>

namespace kestrix::storage {
namespace {

struct MeasurementColumn {
    const char* role;
    const char* title;
    double x;
    double width;
    std::string MeasureData::*text;
};

constexpr std::array kMeasurementColumns{
    MeasurementColumn{"DataName", QT_TRANSLATE_NOOP("Measurements", "Data Name"), 0, 50,
                      &MeasureData::dataName},
    MeasurementColumn{"Function", QT_TRANSLATE_NOOP("Measurements", "Function"), 51, 44,
                      &MeasureData::function},
    MeasurementColumn{"Parameters", QT_TRANSLATE_NOOP("Measurements", "Parameters"), 96, 61,
                      &MeasureData::parameters},
    MeasurementColumn{"Result", QT_TRANSLATE_NOOP("Measurements", "Result"), 158, 60, &MeasureData::result},
    MeasurementColumn{"DateTime", QT_TRANSLATE_NOOP("Measurements", "Date Time"), 219, 50,
                      &MeasureData::dateTime},
    MeasurementColumn{"Comments", QT_TRANSLATE_NOOP("Measurements", "Comments"), 270, 50,
                      &MeasureData::comments},
};

}  // namespace

ui::Columns measurementColumns() {
    ui::Columns columns;
    for (const MeasurementColumn& column : kMeasurementColumns)
        columns << ui::Column{.role = QLatin1String(column.role),
                              .title = QCoreApplication::translate("Measurements", column.title),
                              .x = column.x,
                              .width = column.width};
    return columns;
}

QStringList measurementTexts(const MeasureData& measure) {
    QStringList texts;
    for (const MeasurementColumn& column : kMeasurementColumns)
        texts << QString::fromStdString(measure.*column.text);
    return texts;
}

}  // namespace kestrix::storage
