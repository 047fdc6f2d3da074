#include "history/PatternPass.h"

#include <cstddef>

namespace kestrix::history {
namespace {

constexpr std::string_view kFlags = "-+#0' ";
constexpr std::string_view kConversions = "@dDiuUxXoOfFeEgGaAcCsSpn";

// Reads a directive from behind its % on.
class Directive {
  public:
    explicit Directive(std::string_view pattern) : rest_(pattern) {}

    // The number of bytes that it takes; 0: it is no whole one.
    std::size_t length() {
        const std::size_t all = rest_.size();
        skipPosition();
        skipFlags();
        skipNumber();
        if (skip('.')) skipNumber();
        skipLength();
        return skipOneOf(kConversions) ? all - rest_.size() : 0;
    }

  private:
    bool skip(char wanted) { return skipOneOf({&wanted, 1}); }
    bool skipOneOf(std::string_view wanted) {
        if (rest_.empty() || wanted.find(rest_.front()) == std::string_view::npos) return false;
        rest_.remove_prefix(1);
        return true;
    }
    bool skipDigits() {
        const std::string_view before = rest_;
        while (skipOneOf("0123456789")) {
        }
        return rest_.size() < before.size();
    }
    void skipPosition() {
        const std::string_view before = rest_;
        if (!skipDigits() || !skip('$')) rest_ = before;
    }
    void skipFlags() {
        unsigned seen = 0;
        while (!rest_.empty()) {
            const std::size_t flag = kFlags.find(rest_.front());
            if (flag == std::string_view::npos || ((seen >> flag) & 1U) != 0) return;
            seen |= 1U << flag;
            rest_.remove_prefix(1);
        }
    }
    void skipNumber() {
        if (skip('*'))
            skipPosition();
        else
            skipDigits();
    }
    void skipLength() {
        for (const char letter : {'h', 'l'}) {
            if (skip(letter)) {
                skip(letter);
                return;
            }
        }
        skipOneOf("qLztj");
    }

    std::string_view rest_;
};

}  // namespace

void appendPatternPass(std::string& text, std::string_view pattern, std::string_view timeStamp) {
    for (std::size_t percent = 0; (percent = pattern.find('%')) != std::string_view::npos;) {
        text += pattern.substr(0, percent);
        pattern.remove_prefix(percent + 1);
        if (pattern.starts_with('@')) {
            text += timeStamp;
            pattern.remove_prefix(1);
        } else if (pattern.starts_with('%')) {
            text += '%';
            pattern.remove_prefix(1);
        } else if (const std::size_t length = Directive(pattern).length(); length > 0) {
            pattern.remove_prefix(length);
        } else {
            text += '%';
        }
    }
    text += pattern;
}

}  // namespace kestrix::history
