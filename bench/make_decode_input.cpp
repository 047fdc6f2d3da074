// Writes inputs of a given size for the decode benchmark: make_decode_input frames|ais MEBIBYTES > FILE
// frames: the tester's stream. ais: position reports of ships in NMEA lines, which gpsdecode turns into JSON.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include "bench/TesterStream.h"

namespace {

constexpr std::size_t kMebibyte = 1'048'576;

void writeBits(std::string& bits, std::uint32_t value, int count) {
    for (int i = count - 1; i >= 0; --i) bits += static_cast<char>('0' + (value >> i & 1U));
}

// A position report of class A (message 1, 168 bits) in its armoured line with checksum.
std::string positionReport(std::mt19937& random) {
    const auto between = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
    std::string bits;
    writeBits(bits, 1, 6);
    writeBits(bits, 0, 2);
    writeBits(bits, 200'000'000 + between(500'000'000), 30);
    writeBits(bits, between(9), 4);
    writeBits(bits, between(100), 8);
    writeBits(bits, between(1000), 10);
    writeBits(bits, 1, 1);
    writeBits(bits, between(100'000'000), 28);
    writeBits(bits, between(50'000'000), 27);
    writeBits(bits, between(3600), 12);
    writeBits(bits, between(360), 9);
    writeBits(bits, between(60), 6);
    writeBits(bits, 0, 25);
    std::string line = "!AIVDM,1,1,,A,";
    for (std::size_t at = 0; at < bits.size(); at += 6) {
        const auto six = static_cast<int>(std::strtol(bits.substr(at, 6).c_str(), nullptr, 2));
        line += static_cast<char>(six + (six < 40 ? 48 : 56));
    }
    line += ",0";
    unsigned sum = 0;
    for (const char c : std::string_view(line).substr(1)) sum ^= static_cast<unsigned char>(c);
    char end[8];
    std::snprintf(end, sizeof end, "*%02X\r\n", sum);
    return line + end;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view kind = argc == 3 ? argv[1] : "";
    const std::size_t size = argc == 3 ? std::strtoull(argv[2], nullptr, 10) * kMebibyte : 0;
    if ((kind != "frames" && kind != "ais") || size == 0) {
        std::fprintf(stderr, "make_decode_input: expected frames|ais MEBIBYTES\n");
        return 2;
    }
    if (kind == "frames") {
        const auto stream = kestrix::bench::testerStream(size / 36);
        return std::fwrite(stream.data(), 1, stream.size(), stdout) == stream.size() ? 0 : 1;
    }
    std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same file every time
    std::size_t written = 0;
    while (written < size) {
        const std::string line = positionReport(random);
        if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size()) return 1;
        written += line.size();
    }
    return 0;
}
