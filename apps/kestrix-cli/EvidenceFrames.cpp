#include "apps/kestrix-cli/EvidenceFrames.h"

#include <algorithm>
#include <string>

namespace kestrix::cli {

std::optional<display::MeasuredFrames> framesOf(const storage::Evidence& evidence) {
    display::MeasuredFrames frames;
    const auto take = [](const std::string& bytes, protocol::FrameBytes& frame) {
        if (bytes.size() != frame.size()) return false;
        std::copy(bytes.begin(), bytes.end(), frame.begin());
        return true;
    };
    if (!take(evidence.frame, frames.reading)) return std::nullopt;
    frames.equalInARow = evidence.equalFrames;
    for (std::size_t row = 0; row < evidence.tripTimeFrames.size(); ++row) {
        if (evidence.tripTimeFrames[row].empty()) continue;
        if (!take(evidence.tripTimeFrames[row], frames.tripTimes[row].emplace())) return std::nullopt;
    }
    return frames;
}

}  // namespace kestrix::cli
