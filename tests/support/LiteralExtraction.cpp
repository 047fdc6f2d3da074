#include "tests/support/LiteralExtraction.h"

namespace kestrix::testing {

std::vector<std::string> LiteralExtraction::receive(const std::string& text) {
    std::vector<std::string> frames;
    buffer_ = buffer_ + text;
    if (buffer_.size() < 7) return frames;
    std::size_t i = 0;
    do {
        if (buffer_.size() < i + 6) break;
        const std::string probe = buffer_.substr(i, 6);
        if (probe != "7e0d1e") {
            i = i + 1;
            continue;
        }
        if (buffer_.size() < i + 72) break;
        frames.push_back(buffer_.substr(i, 72));
        buffer_ = buffer_.substr(i + 72);
        i = 0;
    } while (i < buffer_.size());
    return frames;
}

}  // namespace kestrix::testing
