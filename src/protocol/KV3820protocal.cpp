#include "protocol/KV3820protocal.h"

#include <algorithm>
#include <array>

#include "protocol/DisplayTexts.h"
#include "protocol/FrameDecoder.h"
#include "protocol/FrameLayout.h"
#include "protocol/HexText.h"

namespace kestrix::protocol {

KV3820protocal& KV3820protocal::initFromString(std::string_view frameText) {
    std::array<std::uint8_t, frame::kLength> bytes;
    const std::size_t count = bytesFromHexText(frameText, bytes);
    return initFromNSdata(std::span(bytes).first(count));
}

KV3820protocal& KV3820protocal::initFromNSdata(std::span<const std::uint8_t> bytes) {
    initStructAndValue();
    const FrameCheck check = checkFrame(bytes);
    if (check == FrameCheck::Foreign) return *this;
    if (check == FrameCheck::Valid) {
        decodeFrame(bytes, record_);
        std::copy_n(bytes.begin(), std::min(bytes.size(), record_.frame.size()), record_.frame.begin());
    }
    deriveTexts(bytes[frame::kStatus.first], record_);
    return *this;
}

void KV3820protocal::initStructAndValue() {
    record_.bRecord = false;
}

}  // namespace kestrix::protocol
