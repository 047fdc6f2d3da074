#pragma once

namespace kestrix::ui {

// Gives the font families that the screens name ("Arial", "Helvetica") the metric-compatible Liberation Sans,
// and makes it the application's font. Says in one log line when it is not installed. Needs the
// QGuiApplication.
void installSystemFont();

}  // namespace kestrix::ui
