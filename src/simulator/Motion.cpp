#include "simulator/Motion.h"

#include <cmath>

namespace kestrix::simulator {

namespace {
// With five time constants the last step onto the final value is below one in a hundred.
constexpr double kTimeConstants = 5;
}  // namespace

double valueAt(const Motion& motion, std::uint64_t frame) noexcept {
    const std::uint64_t passed = motion.elapsed + frame;
    if (motion.kind == MotionKind::Still || passed >= motion.frames) return motion.to;
    const double part = static_cast<double>(passed) / static_cast<double>(motion.frames);
    const double way = motion.from - motion.to;
    if (motion.kind == MotionKind::Ramp) return motion.to + way * (1 - part);
    return motion.to + way * std::exp(-kTimeConstants * part);
}

}  // namespace kestrix::simulator
