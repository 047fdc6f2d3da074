#pragma once

namespace kestrix::bench {

// How long lists are measured.
inline constexpr int kRows = 10'000;
inline constexpr double kByFinger = 7;  // points from one picture to the next
inline constexpr double kByPage = 600;  // nothing that was seen is seen again

}  // namespace kestrix::bench
