// The beginning of a capture file may be anything; a header that is written is always read back.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/CaptureFile.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrix::platform;
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    const CaptureStart start = readCaptureStart(text);
    require(start.headerLength <= text.size() && start.headerLength <= kCaptureHeaderMax);
    require(start.header.has_value() == (start.headerLength > 0));
    if (start.header) {
        require(text[start.headerLength - 1] == '\n');
        const CaptureStart again = readCaptureStart(captureHeaderLine(*start.header));
        require(again.header.has_value());
        const bool cut = again.header->source != start.header->source;
        require(!cut || start.header->source.size() > kCaptureHeaderMax / 4);
    }

    const std::string line = captureHeaderLine({std::string(text), "2026-11-21T05:00:00Z"});
    require(line.size() <= kCaptureHeaderMax && line.find('\n') == line.size() - 1);
    const CaptureStart written = readCaptureStart(line + "~\r\x1e");
    require(written.header.has_value() && written.headerLength == line.size());
    require(written.header->startTime == "2026-11-21T05:00:00Z");
    if (size < kCaptureHeaderMax / 4) require(written.header->source == text);
    return 0;
}
