#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "storage/Evidence.h"

namespace kestrix::storage {

// The fields that a hash is made from: each by its length, four bytes with the highest first, and its bytes;
// numbers in decimal digits. Two lists of different fields are never the same bytes.
inline void appendField(std::string& form, std::string_view field) {
    const auto length = static_cast<std::uint32_t>(field.size());
    for (int shift = 24; shift >= 0; shift -= 8) form += static_cast<char>(length >> shift & 0xFF);
    form.append(field);
}

inline void appendField(std::string& form, std::int64_t number) {
    appendField(form, std::string_view(std::to_string(number)));
}

inline std::string_view bytesOf(const Sha256& hash) {
    return {reinterpret_cast<const char*>(hash.data()), hash.size()};
}

}  // namespace kestrix::storage
