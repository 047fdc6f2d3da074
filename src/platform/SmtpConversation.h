#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrix::platform {

// How far a conversation with a mail server has come: the last command that was more than a farewell.
enum class SmtpStep : std::uint8_t {
    None,
    Greeting,
    StartTls,
    Login,
    Sender,
    Recipient,
    Data,
    Content,
    Quit
};

// Follows what is said. It keeps no command, for some of them are passwords.
class SmtpConversation {
  public:
    // A line that was sent, without what the message holds.
    void said(std::string_view line);
    // A line of the server's: "250-SIZE 1000", "550 5.1.1 nobody of this name".
    void heard(std::string_view line);

    SmtpStep step() const { return step_; }
    // The server has taken the mail, whatever comes after it.
    bool isAccepted() const { return accepted_; }
    // A login was begun.
    bool hasLoggedIn() const { return loggedIn_; }
    // The farewell has been said.
    bool isLeaving() const { return leaving_; }
    // The latest answer at this step, 0 before the first; its lines in one, and not made printable.
    int replyCode() const { return code_; }
    const std::string& replyText() const { return text_; }

  private:
    SmtpStep step_ = SmtpStep::None;
    bool accepted_ = false;
    bool leaving_ = false;
    bool loggedIn_ = false;
    bool complete_ = true;  // the next line begins an answer
    int code_ = 0;
    std::string text_;
};

}  // namespace kestrix::platform
