#include "platform/BluetoothAddress.h"

#include <cctype>
#include <cstddef>

namespace kestrix::platform {

std::string bluetoothAddress(const std::string& text) {
    constexpr std::size_t kLength = 17;
    if (text.size() != kLength) return {};
    std::string address = text;
    for (std::size_t i = 0; i < kLength; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (i % 3 == 2 ? c != ':' : std::isxdigit(c) == 0) return {};
        address[i] = static_cast<char>(std::toupper(c));
    }
    return address;
}

}  // namespace kestrix::platform
