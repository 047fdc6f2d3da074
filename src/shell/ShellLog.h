#pragma once

#include <QLoggingCategory>

namespace kestrix::shell {

Q_DECLARE_LOGGING_CATEGORY(lcShell)

}  // namespace kestrix::shell
