#include "link/FrameExtractor.h"

#include <algorithm>

namespace kestrix::link {
namespace {

constexpr std::size_t kMarkerBeginning =
    FrameExtractor::kMarker.size() - 1;  // characters that could begin a marker

}  // namespace

void FrameExtractor::append(std::string_view text) {
    // Moving the rest to the front costs at most as much as was consumed since the last time, give or take a
    // frame.
    if (begin_ == text_.size() || begin_ > kLeadingMax + kFrameCharacters) {
        text_.erase(0, begin_);
        searched_ -= begin_;
        begin_ = 0;
    }
    text_.append(text);
}

std::optional<std::string_view> FrameExtractor::nextFrame() {
    const std::string_view text = text_;
    const std::size_t marker = text.find(kMarker, searched_);
    if (marker == std::string_view::npos) {
        // The scan ends where fewer than a marker's characters remain; those wait.
        searched_ = std::max(searched_, text.size() - std::min(text.size(), kMarkerBeginning));
        if (text.size() - begin_ > kLeadingMax) begin_ = searched_;
        return std::nullopt;
    }
    searched_ = marker;
    if (marker - begin_ > kLeadingMax) begin_ = marker;
    if (text.size() - marker < kFrameCharacters) return std::nullopt;
    begin_ = searched_ = marker + kFrameCharacters;
    return text.substr(marker, kFrameCharacters);
}

}  // namespace kestrix::link
