#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kestrix::link {

// Cuts frames of 72 characters out of hexadecimal text that comes in pieces. A frame starts at the marker, at
// any character, odd ones too; what stands before it is dropped with it. The work is linear in the text
// received: what was searched is not searched again, what is kept is not copied again. The memory is bounded:
// see kLeadingMax.
class FrameExtractor {
  public:
    static constexpr std::string_view kMarker = "7e0d1e";
    static constexpr std::size_t kFrameCharacters = 72;
    // Characters kept before a marker has come. Past these only those stay that could still begin one, so
    // every frame is delivered that would be without the bound.
    static constexpr std::size_t kLeadingMax = 4096;

    void append(std::string_view text);

    // The next whole frame; none until more text comes. Valid until the next append().
    std::optional<std::string_view> nextFrame();

    // What is kept: received and neither part of a frame yet nor dropped.
    std::string_view kept() const { return std::string_view(text_).substr(begin_); }

  private:
    std::string text_;
    std::size_t begin_ = 0;     // what stands before has been consumed
    std::size_t searched_ = 0;  // no marker begins in [begin_, searched_)
};

}  // namespace kestrix::link
