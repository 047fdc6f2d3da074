#pragma once

#include <chrono>

// When every tour happens.
namespace kestrix::tour {

// 2026-01-15 10:00:00 UTC: every measurement of every tour.
inline constexpr std::chrono::system_clock::time_point kNow{std::chrono::seconds(1'768'471'200)};
// What is exported then, in the tour's time zone.
inline constexpr const char* kExportedText = "20260115100000.csv";
inline constexpr const char* kExportedReport = "20260115100000.pdf";

}  // namespace kestrix::tour
