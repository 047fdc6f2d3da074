#pragma once

#include <QLoggingCategory>

namespace kestrix::storage {

Q_DECLARE_LOGGING_CATEGORY(lcStorage)

}  // namespace kestrix::storage
