#pragma once

#include <QLoggingCategory>

namespace kestrix::history {

Q_DECLARE_LOGGING_CATEGORY(lcExport)

}  // namespace kestrix::history
