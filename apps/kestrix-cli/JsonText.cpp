#include "apps/kestrix-cli/JsonText.h"

namespace kestrix::cli {

char* json_text::putEscaped(char* at, std::string_view text) {
    constexpr std::string_view special = "\"\\\b\f\n\r\t";
    constexpr std::string_view shortForm = "\"\\bfnrt";
    constexpr std::string_view digits = "0123456789abcdef";
    for (const char c : text) {
        if (!mustEscape(c)) {
            *at++ = c;
            continue;
        }
        *at++ = '\\';
        if (const auto found = special.find(c); found != std::string_view::npos) {
            *at++ = shortForm[found];
            continue;
        }
        const auto code = static_cast<unsigned char>(c);
        for (const char digit : {'u', '0', '0'}) *at++ = digit;
        *at++ = digits[code >> 4U];
        *at++ = digits[code & 15U];
    }
    return at;
}

void appendJsonText(std::string& out, std::string_view text) {
    const std::size_t begin = out.size();
    out.resize(begin + 2 + kEscapedCharacter * text.size());
    char* const at = out.data() + begin;
    out.resize(begin + static_cast<std::size_t>(putJsonText(at, text) - at));
}

}  // namespace kestrix::cli
