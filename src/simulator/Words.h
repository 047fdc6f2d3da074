#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The small parts that every statement of a scenario is made of.
namespace kestrix::simulator {

// What is wrong with a line; parseScenario catches it and adds the line's number.
struct StatementError {
    std::string message;
};

// The word in quotes as an error message shows it: printable and not too long.
std::string inQuotes(std::string_view word);

// A number as written: 0.45 is 45 counts with 2 decimals.
struct Decimal {
    std::int64_t counts = 0;
    unsigned decimals = 0;

    double value() const;
    double countsAt(unsigned otherDecimals) const;  // the same value, counted in another last digit
};

// An optional sign and at most 15 digits with at most one point among them; nothing for anything else.
std::optional<Decimal> readDecimal(std::string_view word);

// A length of play: "12 frames", "1 frame", "3s", "0.5 s" or "250ms".
struct Duration {
    std::optional<std::uint64_t> frames;
    std::chrono::nanoseconds time{0};

    // At least 1.
    std::uint64_t framesAt(std::chrono::nanoseconds period) const;
    // At least 1 ms; throws StatementError beyond a day.
    std::chrono::milliseconds timeAt(std::chrono::nanoseconds period) const;
};

// One line, word by word; a '#' at a word's beginning ends it. Every take throws StatementError when the
// next word is not what was asked for.
class Words {
  public:
    explicit Words(std::string_view line);

    bool atEnd() const { return next_ == words_.size(); }
    std::string_view peek() const { return atEnd() ? std::string_view{} : words_[next_]; }
    bool takeIf(std::string_view word);

    std::string_view take(std::string_view what);
    void expect(std::string_view word);
    void expectEnd() const;

    Decimal takeDecimal(std::string_view what);
    // A whole number; hexadecimal after 0x. The error names the range.
    std::uint64_t takeWhole(std::string_view what, std::uint64_t least, std::uint64_t most);
    Duration takeDuration();

  private:
    std::vector<std::string_view> words_;
    std::size_t next_ = 0;
};

// "mode=auto" as its two sides; throws when there is no '=' or a side is empty.
struct Pair {
    std::string_view name;
    std::string_view value;
};
Pair splitPair(std::string_view word);

// The whole number in a word; throws as takeWhole does.
std::uint64_t wholeNumber(std::string_view word, std::string_view what, std::uint64_t least,
                          std::uint64_t most);

}  // namespace kestrix::simulator
