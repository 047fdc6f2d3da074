#pragma once

#include <cstdint>

namespace kestrix::artwork {

// How the build keeps a picture: this head, and behind it the pixels row by row, four bytes each, as a QImage
// of this format has them. Made and read on the same kind of machine.
struct PixelsHead {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t format = 0;  // QImage::Format
    std::int32_t unused = 0;  // so that the pixels begin at a multiple of 16
};

}  // namespace kestrix::artwork
