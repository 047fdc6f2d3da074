#include "link/FrameListener.h"

#include <array>
#include <string>

#include "link/FrameExtractor.h"
#include "protocol/FrameDecoder.h"
#include "protocol/HexText.h"

namespace kestrix::link {
namespace {

bool isTesters(std::string_view frameText) {
    std::array<std::uint8_t, FrameExtractor::kFrameCharacters / 2> frame{};
    const std::size_t count = protocol::bytesFromHexText(frameText, frame);
    return protocol::isMarked(std::span(frame).first(count));
}

class FrameListener final : public platform::Listener {
  public:
    std::size_t hear(std::span<const std::uint8_t> bytes) override {
        hexText_.clear();
        protocol::appendHexText(hexText_, bytes);
        extractor_.append(hexText_);
        std::size_t frames = 0;
        while (const auto frameText = extractor_.nextFrame()) {
            if (isTesters(*frameText)) ++frames;
        }
        return frames;
    }
    std::size_t undecided() const override { return (extractor_.kept().size() + 1) / 2; }

  private:
    std::string hexText_;  // kept for its room
    FrameExtractor extractor_;
};

}  // namespace

std::unique_ptr<platform::Listener> makeFrameListener() {
    return std::make_unique<FrameListener>();
}

}  // namespace kestrix::link
