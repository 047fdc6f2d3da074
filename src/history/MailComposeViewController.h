#pragma once

#include <array>
#include <memory>
#include <string>

#include "history/MailComposing.h"
#include "history/MailPasswords.h"
#include "platform/MailModule.h"
#include "platform/MailSettings.h"
#include "ui/FramedScreen.h"

namespace kestrix::history {

// Completes a mail and sends it: recipient and subject, the server that takes it, and the user's own address.
// It begins with `mailToCompose`. It tells its delegate how the mail ended, and leaves it to it to close the
// screen; from then on nothing on it does anything.
class MailComposeViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged FINAL)

  public:
    MailComposeViewController(ui::ScreenId id, const ui::Services& services);
    ~MailComposeViewController() override;

    void viewDidLoad() override;
    bool pressKey(int key, int modifiers, bool repeated) override;

    // Checks what was typed, and sends it. What is wrong stands in `status`.
    void pressSend();
    // Ends as cancelled; what is on its way is called back first.
    void pressCancel();
    // Writes the mail into the documents folder, as a file that mail programs open (.eml), and ends.
    void pressDraft();
    // From STARTTLS to TLS and back.
    void pressSecurity();

    enum class State { Editing, Sending, Ended };
    State state() const { return state_; }
    // 0 to 1, while the mail is on its way.
    double progress() const { return progress_; }
    const platform::MailMessage& message() const { return message_; }

    ui::Label lblRecipient{*this, "lblRecipient"};
    ui::Label lblSubject{*this, "lblSubject"};
    ui::Label lblMessage{*this, "lblMessage"};
    ui::Label lblAttachment{*this, "lblAttachment"};
    ui::Label lblServerTitle{*this, "lblServerTitle"};
    ui::Label lblServer{*this, "lblServer"};
    ui::Label lblUser{*this, "lblUser"};
    ui::Label lblPassword{*this, "lblPassword"};
    ui::Label lblFrom{*this, "lblFrom"};
    ui::TextField recipient{*this, "recipient"};
    ui::TextField subject{*this, "subject"};
    ui::Label messageText{*this, "messageText"};
    ui::Label attachmentText{*this, "attachmentText"};
    ui::TextField server{*this, "server"};
    ui::Button btnSecurity{*this, "btnSecurity", ui::Button::Event::TouchUpInside};
    ui::TextField user{*this, "user"};
    ui::TextField password{*this, "password"};
    ui::TextField from{*this, "from"};
    ui::Label status{*this, "status"};
    ui::Button btnCancel{*this, "btnCancel", ui::Button::Event::TouchUpInside};
    ui::Button btnDraft{*this, "btnDraft", ui::Button::Event::TouchUpInside};
    ui::Button btnSend{*this, "btnSend", ui::Button::Event::TouchUpInside};

  Q_SIGNALS:
    void progressChanged();

  private:
    struct Problem {
        ui::TextField* field = nullptr;  // where it is mended
        QString text{};                  // empty: there is none
    };

    std::array<ui::TextField*, 6> fields() {
        return {&recipient, &subject, &server, &user, &password, &from};
    }
    void buildCaptions();
    void showSettings();
    void showSecurity();
    // Takes over what the fields say.
    void readFields();
    // What is wrong with it, in one line; empty: nothing.
    QString problemOf(const ui::TextField& field) const;
    Problem firstProblem();
    void say(const QString& text, bool isProblem);
    void refuse(const Problem& problem);
    void setState(State state);
    void findPassword();
    void send(const std::string& withPassword);
    void mailEnded(const platform::MailReport& report);
    void finish(platform::MailResult result, const std::string& error);

    platform::MailParts parts_;
    std::unique_ptr<MailPasswords> passwords_;
    MailComposeDelegate* delegate_ = nullptr;
    QString problem_;  // of the attachment
    platform::MailSettings settings_;
    platform::MailMessage message_;
    std::string used_;       // the password with which the mail is on its way
    bool onItsWay_ = false;  // the transport has the mail
    State state_ = State::Editing;
    double progress_ = 0;
};

}  // namespace kestrix::history
