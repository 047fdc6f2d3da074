#pragma once

#include <string>

namespace kestrix::tour {

// Leads the application with the built-in tester through every state of every screen, in a time and a locale
// of its own, so that every run shows the same. Writes into `folder`, which is missing, empty or an earlier
// tour's (any other is refused): 1x/ and 3x/ with a picture of each, at one and three pixels to the point,
// and kestrix.sqlite with what was recorded on the way. Says each picture on standard output. Answers the
// exit status; a problem is one line on standard error. Needs the QGuiApplication, but no display.
int run(const std::string& folder);

}  // namespace kestrix::tour
