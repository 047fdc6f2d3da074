#include "apps/common/PrintableText.h"

#include <algorithm>
#include <array>

namespace kestrix::app {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array kUnprintable = std::to_array<Range>({{0x00, 0x1F},
                                                          {0x7F, 0x9F},
                                                          {0x061C, 0x061C},
                                                          {0x200E, 0x200F},
                                                          {0x2028, 0x202E},
                                                          {0x2066, 0x2069},
                                                          {0xD800, 0xDFFF},
                                                          {0xFEFF, 0xFEFF},
                                                          {0xFFF9, 0xFFFB},
                                                          {0xE0000, 0xE007F}});

constexpr std::string_view kReplacement = "\uFFFD";

bool isPrintable(char32_t c) {
    return std::none_of(kUnprintable.begin(), kUnprintable.end(),
                        [c](Range range) { return c >= range.first && c <= range.last; });
}

}  // namespace

Character firstCharacterOf(std::string_view text) {
    struct Form {
        unsigned char mask, lead;
        char32_t lowest;  // below it the form is longer than it need be
    };
    constexpr std::array forms = std::to_array<Form>(
        {{0x80, 0x00, 0}, {0xE0, 0xC0, 0x80}, {0xF0, 0xE0, 0x800}, {0xF8, 0xF0, 0x10000}});
    const auto lead = static_cast<unsigned char>(text.front());
    const auto form =
        std::find_if(forms.begin(), forms.end(), [lead](const Form& f) { return (lead & f.mask) == f.lead; });
    if (form == forms.end()) return {};
    const auto bytes = static_cast<std::size_t>(form - forms.begin()) + 1;
    if (text.size() < bytes) return {};
    char32_t code = lead & static_cast<unsigned char>(~form->mask);
    for (std::size_t i = 1; i < bytes; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80U) return {};
        code = (code << 6U) | (next & 0x3FU);
    }
    if (code < form->lowest || code > 0x10FFFF) return {};
    return {code, bytes, true};
}

std::string printable(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const Character character = firstCharacterOf(text);
        const bool shown = character.valid && isPrintable(character.code);
        out += shown ? text.substr(0, character.bytes) : kReplacement;
        text.remove_prefix(character.bytes);
    }
    return out;
}

}  // namespace kestrix::app
