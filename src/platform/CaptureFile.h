#pragma once

#include <optional>
#include <string>
#include <string_view>

// A capture: one header line, then the tester's bytes as they came. A file without the header is all bytes.
namespace kestrix::platform {

struct CaptureHeader {
    std::string source;     // URI
    std::string startTime;  // UTC, ISO 8601
};

// The longest header line, line end included; a longer first line is not one.
inline constexpr std::size_t kCaptureHeaderMax = 4096;

// The header line with its line end, cut to kCaptureHeaderMax. Whatever is not printable ASCII in the source
// is written as %XX, so that the header can neither break the line nor look like a frame.
std::string captureHeaderLine(const CaptureHeader& header);

struct CaptureStart {
    std::optional<CaptureHeader> header;  // none: the file has no header
    std::size_t headerLength = 0;         // bytes before the tester's first
};

// Reads the header from the file's first kCaptureHeaderMax bytes (or all of it, when it is shorter).
CaptureStart readCaptureStart(std::string_view beginning);

}  // namespace kestrix::platform
