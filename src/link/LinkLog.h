#pragma once

#include <QLoggingCategory>

namespace kestrix::link {

Q_DECLARE_LOGGING_CATEGORY(lcLink)

}  // namespace kestrix::link
