#pragma once

#include <QLoggingCategory>

namespace kestrix::live {

Q_DECLARE_LOGGING_CATEGORY(lcLive)

}  // namespace kestrix::live
