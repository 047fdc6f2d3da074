#include "platform/CaptureFile.h"

namespace kestrix::platform {
namespace {

constexpr std::string_view kMagic = "# kestrix-capture 1 source=";
constexpr std::string_view kStart = " start=";
constexpr std::size_t kStartTimeMax = 64;

// Escapes all that is not plain ASCII, and the blank and the percent sign that the line itself uses.
std::string escaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7F && c != '%') {
            result += c;
        } else {
            result += '%';
            result += digits[byte >> 4];
            result += digits[byte & 15];
        }
    }
    return result;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escape =
            text[i] == '%' && text.size() - i > 2 && hexDigit(text[i + 1]) >= 0 && hexDigit(text[i + 2]) >= 0;
        result += escape ? static_cast<char>(16 * hexDigit(text[i + 1]) + hexDigit(text[i + 2])) : text[i];
        if (escape) i += 2;
    }
    return result;
}

}  // namespace

std::string captureHeaderLine(const CaptureHeader& header) {
    std::string line(kMagic);
    line += escaped(header.source)
                .substr(0, kCaptureHeaderMax - kMagic.size() - kStart.size() - kStartTimeMax - 1);
    line += kStart;
    line += escaped(header.startTime).substr(0, kStartTimeMax);
    return line += '\n';
}

CaptureStart readCaptureStart(std::string_view beginning) {
    beginning = beginning.substr(0, kCaptureHeaderMax);
    if (beginning.substr(0, kMagic.size()) != kMagic) return {};
    const std::size_t lineEnd = beginning.find('\n');
    if (lineEnd == std::string_view::npos) return {};
    const std::string_view fields = beginning.substr(kMagic.size(), lineEnd - kMagic.size());
    const std::size_t start = fields.find(kStart);
    if (start == std::string_view::npos) return {};
    return {
        CaptureHeader{unescaped(fields.substr(0, start)), unescaped(fields.substr(start + kStart.size()))},
        lineEnd + 1};
}

}  // namespace kestrix::platform
