#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>

namespace kestrix::cli {

// Appends to `out` what `write` writes into room for `bytes` bytes: write(char* at) answers the place behind
// its last byte. One room for a whole object spares a check, and often a move, for each of its hundred parts
// (bench/ReadingJson_bench.cpp measures a whole object).
template <class Write>
void appendWithin(std::string& out, std::size_t bytes, Write write) {
    constexpr std::size_t usual = 8192;  // enough for every record of a tester
    std::array<char, usual> stack;
    std::unique_ptr<char[]> heap;
    char* begin = stack.data();
    if (bytes > usual) {
        heap.reset(new char[bytes]);
        begin = heap.get();
    }
    out.append(begin, write(begin));
}

}  // namespace kestrix::cli
