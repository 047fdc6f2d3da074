#include "simulator/ByteFaults.h"

#include <algorithm>

namespace kestrix::simulator {

void damage(std::vector<std::uint8_t>& frame, const Damage& fault) {
    const auto place = static_cast<std::ptrdiff_t>(std::min(fault.place, frame.size()));
    if (fault.kind == DamageKind::Insert) {
        frame.insert(frame.begin() + place, fault.value);
    } else if (fault.place < frame.size()) {
        if (fault.kind == DamageKind::Drop) {
            frame.erase(frame.begin() + place);
        } else {
            frame[fault.place] ^= fault.value;
        }
    }
}

void sendThrough(const LineNoise& line, const std::vector<std::uint8_t>& bytes, Random& random,
                 std::vector<std::uint8_t>& out) {
    if (line.clean()) {
        out.insert(out.end(), bytes.begin(), bytes.end());
        return;
    }
    for (const std::uint8_t byte : bytes) {
        if (random.fraction() < line.insert) out.push_back(random.byte());
        if (random.fraction() < line.drop) continue;
        const bool flips = random.fraction() < line.flip;
        out.push_back(flips ? static_cast<std::uint8_t>(byte ^ (1U << (random.byte() % 8U))) : byte);
    }
}

}  // namespace kestrix::simulator
