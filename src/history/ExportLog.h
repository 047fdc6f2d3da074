#pragma once

#include <QLoggingCategory>

namespace kestrix::history {

Q_DECLARE_LOGGING_CATEGORY(lcExport)  // what was not exported
Q_DECLARE_LOGGING_CATEGORY(lcReport)  // what a report cannot show

}  // namespace kestrix::history
