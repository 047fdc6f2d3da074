#include "platform/SmtpConversation.h"

#include <algorithm>
#include <charconv>

namespace kestrix::platform {
namespace {

constexpr std::size_t kLongestReply = 1000;
constexpr std::size_t kCodeDigits = 3;

struct VerbRow {
    std::string_view verb;
    SmtpStep step;
};
constexpr VerbRow kVerbs[] = {
    {"EHLO", SmtpStep::Greeting}, {"HELO", SmtpStep::Greeting}, {"STARTTLS", SmtpStep::StartTls},
    {"AUTH", SmtpStep::Login},    {"MAIL", SmtpStep::Sender},   {"RCPT", SmtpStep::Recipient},
    {"DATA", SmtpStep::Data},
};

}  // namespace

void SmtpConversation::said(std::string_view line) {
    // In the midst of a login nothing else is said but its answers, which may look like anything.
    if (step_ == SmtpStep::Login && code_ / 100 == 3) return;
    const std::string_view verb = line.substr(0, line.find_first_of(" \r\n"));
    leaving_ = leaving_ || verb == "QUIT";
    const auto* const row = std::find_if(std::begin(kVerbs), std::end(kVerbs),
                                         [&](const VerbRow& one) { return one.verb == verb; });
    if (row == std::end(kVerbs)) return;
    step_ = row->step;
    loggedIn_ = loggedIn_ || step_ == SmtpStep::Login;
    // What was answered before is no answer to this.
    code_ = 0;
    text_.clear();
    complete_ = true;
}

void SmtpConversation::heard(std::string_view line) {
    if (leaving_) return;
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
    int code = 0;
    const std::string_view digits = line.substr(0, kCodeDigits);
    const auto [stopped, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code);
    if (digits.size() < kCodeDigits || error != std::errc() || stopped != digits.data() + digits.size())
        return;
    if (complete_) text_.clear();
    complete_ = line.size() == kCodeDigits || line[kCodeDigits] != '-';
    code_ = code;
    if (step_ == SmtpStep::None) step_ = SmtpStep::Greeting;
    if (line.size() > kCodeDigits + 1 && text_.size() < kLongestReply) {
        if (!text_.empty()) text_ += ' ';
        text_ += line.substr(kCodeDigits + 1, kLongestReply);
    }
    if (!complete_) return;
    if (step_ == SmtpStep::Data && code_ == 354) {
        step_ = SmtpStep::Content;
    } else if (step_ == SmtpStep::Content && code_ / 100 == 2) {
        accepted_ = true;
    }
}

}  // namespace kestrix::platform
