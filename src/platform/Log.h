#pragma once

#include <QLoggingCategory>

// The categories of the log. A line is written as given, with level and category in front, to standard error.
namespace kestrix::platform {

Q_DECLARE_LOGGING_CATEGORY(lcAccessory)
Q_DECLARE_LOGGING_CATEGORY(lcSettings)

// Gives every line of this process its form: "info kestrix.link: ====连接====". Lines of information are
// written when `verbose` or the user's own rules (QT_LOGGING_RULES, qtlogging.ini) ask for them: every
// category of ours begins at QtWarningMsg, so that any rule counts over it.
void installLogFormat(bool verbose = false);

}  // namespace kestrix::platform
