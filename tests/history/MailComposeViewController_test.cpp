#include "history/MailComposeViewController.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "tests/support/FakeMail.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/TestServices.h"

namespace kestrix::history {
namespace {

using platform::MailResult;
using State = MailComposeViewController::State;

class MailComposeViewControllerTest : public ::testing::Test, protected MailComposeDelegate {
  protected:
    MailComposeViewControllerTest() {
        MailPasswords::forgetSession();
        surroundings_.loadMail = [this] { return mail_.parts(); };
    }
    ~MailComposeViewControllerTest() override { MailPasswords::forgetSession(); }

    MailComposeViewController& open() {
        mailToCompose = MailToCompose{
            .recipient = "-",
            .subject = "Plant A",
            .htmlBody = "<H5>Kestrix Safety Tester</H5>",
            .attachment = platform::MailAttachment{"20240603000000.csv", "csv", std::string(2048, 'x')},
            .delegate = this};
        screen_ =
            std::make_unique<MailComposeViewController>(ui::ScreenId::MailCompose, surroundings_.services());
        screen_->setName(QStringLiteral("Mail"));
        screen_->loadView();
        return *screen_;
    }
    MailComposeViewController& openComplete(const char* password = "secret") {
        MailComposeViewController& screen = open();
        screen.recipient.edit(QStringLiteral("office@example.org"));
        screen.server.edit(QStringLiteral("mail.example.org:2525"));
        screen.user.edit(QStringLiteral("ann"));
        screen.password.edit(QLatin1String(password));
        screen.from.edit(QStringLiteral("ann@example.org"));
        return screen;
    }
    void mailComposeController(MailComposeViewController& controller, MailResult didFinishWithResult,
                               const std::string& error) override {
        EXPECT_EQ(&controller, screen_.get());
        results_.push_back(didFinishWithResult);
        error_ = error;
    }
    QStringList filesInFolder(const QString& pattern) const {
        return QDir(surroundings_.folder.path()).entryList({pattern}, QDir::Files);
    }

    testing::TestServices surroundings_;
    testing::FakeMail mail_;
    std::unique_ptr<MailComposeViewController> screen_;
    std::vector<MailResult> results_;
    std::string error_;
};

TEST_F(MailComposeViewControllerTest, ItComesWithTheMailThatItWasGiven) {
    const MailComposeViewController& screen = open();
    EXPECT_EQ(screen.recipient.text(), QStringLiteral("-"));
    EXPECT_EQ(screen.subject.text(), QStringLiteral("Plant A"));
    EXPECT_EQ(screen.messageText.text(), QStringLiteral("Kestrix Safety Tester"));
    EXPECT_TRUE(screen.attachmentText.text().startsWith(QStringLiteral("20240603000000.csv, ")));
    EXPECT_FALSE(mailToCompose.has_value()) << "taken away";
    EXPECT_TRUE(screen.password.isSecret());
    EXPECT_EQ(screen.status.text(), QString());
}

TEST_F(MailComposeViewControllerTest, SendsWhatWasTypedThroughTheServerThatWasTyped) {
    MailComposeViewController& screen = openComplete();
    screen.subject.edit(QStringLiteral("Prüfung ⚡"));
    screen.btnSend.press();
    ASSERT_EQ(mail_.orders.size(), 1U);
    const platform::MailOrder& order = mail_.orders.front();
    EXPECT_EQ(order.server.host, "mail.example.org");
    EXPECT_EQ(order.server.port, 2525);
    EXPECT_EQ(order.server.security, platform::MailSecurity::StartTls);
    EXPECT_EQ(order.server.user, "ann");
    EXPECT_EQ(order.password, "secret");
    EXPECT_EQ(order.message.from, "ann@example.org");
    EXPECT_EQ(order.message.recipient, "office@example.org");
    EXPECT_EQ(order.message.subject, "Prüfung ⚡");
    EXPECT_EQ(order.message.htmlBody, "<H5>Kestrix Safety Tester</H5>");
    EXPECT_EQ(order.message.attachment->mediaType, "csv");
    EXPECT_EQ(order.message.date, surroundings_.now);
    EXPECT_EQ(screen.state(), State::Sending);
    mail_.end(MailResult::Sent);
    EXPECT_EQ(results_, std::vector{MailResult::Sent});
    EXPECT_EQ(screen.state(), State::Ended);
    EXPECT_EQ(screen.status.text(), QStringLiteral("Sent"));
    EXPECT_EQ(screen.password.text(), QString()) << "nobody needs it any more";
}

TEST_F(MailComposeViewControllerTest, TheRecipientMustBeReplaced) {
    MailComposeViewController& screen = openComplete();
    screen.recipient.edit(QStringLiteral("-"));
    screen.btnSend.press();
    EXPECT_TRUE(mail_.orders.empty());
    EXPECT_EQ(screen.state(), State::Editing);
    EXPECT_EQ(screen.status.text(), QStringLiteral("Type the recipient's address"));
}

TEST_F(MailComposeViewControllerTest, EachFieldIsCheckedAsItIsTyped) {
    MailComposeViewController& screen = openComplete();
    struct Wrong {
        ui::TextField* field;
        const char* text;
        const char* line;
    };
    const Wrong wrong[] = {
        {&screen.recipient, "office", "The recipient's address does not look like name@example.org"},
        {&screen.from, "ann@", "The sender's address does not look like name@example.org"},
        {&screen.server, "mail.example.org:99999",
         "\"99999\" is no port: a port is a number from 1 to 65535"},
        {&screen.server, "no host", "\"no host\" is no name of a mail server"}};
    for (const auto& [field, text, line] : wrong) {
        const QString right = field->text();
        field->edit(QLatin1String(text));
        EXPECT_EQ(screen.status.text(), QLatin1String(line));
        EXPECT_EQ(screen.status.textColor(), ui::Palette::warning);
        screen.btnSend.press();
        EXPECT_TRUE(mail_.orders.empty()) << text;
        field->edit(right);
        EXPECT_EQ(screen.status.text(), QString()) << text;
    }
}

TEST_F(MailComposeViewControllerTest, TheServerIsKeptInTheSettingsAndThePasswordIsNot) {
    openComplete().btnSend.press();
    QFile settings(surroundings_.defaults.path());
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    const QByteArray kept = settings.readAll();
    EXPECT_TRUE(kept.contains("mail.example.org"));
    EXPECT_FALSE(kept.contains("secret"));
    screen_.reset();
    const MailComposeViewController& again = open();
    EXPECT_EQ(again.server.text(), QStringLiteral("mail.example.org:2525"));
    EXPECT_EQ(again.user.text(), QStringLiteral("ann"));
    EXPECT_EQ(again.from.text(), QStringLiteral("ann@example.org"));
    EXPECT_EQ(again.recipient.text(), QStringLiteral("-"));
}

TEST_F(MailComposeViewControllerTest, TheSecurityGoesFromOneToTheOtherAndIsKept) {
    MailComposeViewController& screen = openComplete();
    EXPECT_EQ(screen.btnSecurity.title(), QStringLiteral("STARTTLS"));
    screen.btnSecurity.press();
    EXPECT_EQ(screen.btnSecurity.title(), QStringLiteral("TLS"));
    EXPECT_EQ(screen.server.text(), QStringLiteral("mail.example.org:2525")) << "what is typed stays";
    screen.server.edit(QStringLiteral("mail.example.org:"));
    screen.btnSecurity.press();
    screen.btnSecurity.press();
    EXPECT_EQ(screen.server.text(), QStringLiteral("mail.example.org:")) << "also before it is right";
    screen.server.edit(QStringLiteral("mail.example.org:2525"));
    screen.btnSend.press();
    EXPECT_EQ(mail_.orders.front().server.security, platform::MailSecurity::Tls);
    screen_.reset();
    EXPECT_EQ(open().btnSecurity.title(), QStringLiteral("TLS"));
}

TEST_F(MailComposeViewControllerTest, AnAcceptedPasswordGoesIntoTheKeyringAndIsFoundThere) {
    openComplete().btnSend.press();
    EXPECT_TRUE(mail_.passwords.empty()) << "nobody has accepted it yet";
    mail_.end(MailResult::Sent);
    EXPECT_EQ(mail_.passwords.at("ann@mail.example.org:2525"), "secret");
    screen_.reset();
    MailPasswords::forgetSession();
    openComplete("").btnSend.press();
    EXPECT_EQ(mail_.orders.back().password, "secret");
    EXPECT_FALSE(surroundings_.notice.isShown());
}

TEST_F(MailComposeViewControllerTest, WithoutAKeyringThePasswordIsKeptForTheSessionAndThatIsSaid) {
    mail_.keyringProblem = "there is no keyring";
    openComplete().btnSend.press();
    mail_.end(MailResult::Sent);
    EXPECT_EQ(surroundings_.notice.text(),
              QStringLiteral("The password is kept until Kestrix ends: there is no keyring"));
    openComplete("").btnSend.press();
    EXPECT_EQ(mail_.orders.back().password, "secret");
}

TEST_F(MailComposeViewControllerTest, ARefusedPasswordIsAskedForAgain) {
    openComplete().btnSend.press();
    mail_.end(MailResult::Sent);
    ASSERT_EQ(mail_.passwords.size(), 1U);
    openComplete("").btnSend.press();
    ASSERT_EQ(mail_.orders.back().password, "secret");
    mail_.end(MailResult::Failed, "the server did not accept the password", true);
    MailComposeViewController& screen = openComplete("");
    screen.btnSend.press();
    EXPECT_EQ(mail_.orders.size(), 2U);
    EXPECT_EQ(screen.status.text(), QStringLiteral("Type the password of ann."));
    EXPECT_EQ(screen.state(), State::Editing);
    screen.password.edit(QStringLiteral("another"));
    screen.btnSend.press();
    mail_.end(MailResult::Sent);
    EXPECT_EQ(mail_.passwords.at("ann@mail.example.org:2525"), "another");
    openComplete("").btnSend.press();
    EXPECT_EQ(mail_.orders.back().password, "another");
}

TEST_F(MailComposeViewControllerTest, APasswordOutlivesAFailureThatHasNothingToDoWithIt) {
    mail_.keyringProblem = "there is no keyring";
    openComplete().btnSend.press();
    mail_.end(MailResult::Sent);
    openComplete("").btnSend.press();
    mail_.end(MailResult::Failed, "mail.example.org cannot be reached");
    openComplete("").btnSend.press();
    EXPECT_EQ(mail_.orders.back().password, "secret");
    EXPECT_EQ(mail_.orders.size(), 3U);
}

TEST_F(MailComposeViewControllerTest, AServerWithoutAUserIsAskedForNoPassword) {
    MailComposeViewController& screen = openComplete();
    screen.user.edit({});
    screen.btnSend.press();
    EXPECT_EQ(mail_.orders.front().password, "");
    EXPECT_TRUE(mail_.askedFor.empty());
}

TEST_F(MailComposeViewControllerTest, WhileItIsSentNothingCanBeTypedAndTheProgressShows) {
    MailComposeViewController& screen = openComplete();
    screen.btnSend.press();
    screen.subject.edit(QStringLiteral("other"));
    screen.btnSecurity.press();
    EXPECT_EQ(screen.subject.text(), QStringLiteral("Plant A"));
    EXPECT_EQ(screen.btnSecurity.title(), QStringLiteral("STARTTLS"));
    EXPECT_TRUE(screen.btnSend.hidden());
    EXPECT_TRUE(screen.btnDraft.hidden());
    EXPECT_FALSE(screen.btnCancel.hidden());
    EXPECT_EQ(screen.progress(), 0);
    mail_.sendSoFar(512, 2048);
    EXPECT_EQ(screen.progress(), 0.25);
}

TEST_F(MailComposeViewControllerTest, CancelBeforeSendingEndsAsCancelled) {
    openComplete().btnCancel.press();
    EXPECT_EQ(results_, std::vector{MailResult::Cancelled});
    EXPECT_TRUE(mail_.orders.empty());
    screen_->btnCancel.press();
    screen_->pressSend();
    screen_->pressDraft();
    EXPECT_EQ(results_.size(), 1U) << "it ends once";
    EXPECT_TRUE(mail_.orders.empty());
}

TEST_F(MailComposeViewControllerTest, CancelWhileSendingCallsTheMailBack) {
    openComplete().btnSend.press();
    screen_->btnCancel.press();
    EXPECT_EQ(mail_.cancels, 1);
    EXPECT_TRUE(results_.empty()) << "the server may have accepted it already";
    mail_.end(MailResult::Cancelled);
    EXPECT_EQ(results_, std::vector{MailResult::Cancelled});
}

TEST_F(MailComposeViewControllerTest, EscapeAndBackCancel) {
    open();
    EXPECT_FALSE(screen_->pressKey(Qt::Key_Escape, Qt::ControlModifier, false));
    EXPECT_TRUE(results_.empty()) << "with a modifier";
    EXPECT_TRUE(screen_->pressKey(Qt::Key_Escape, Qt::NoModifier, true));
    EXPECT_TRUE(results_.empty()) << "held down";
    EXPECT_TRUE(screen_->pressKey(Qt::Key_Escape, Qt::NoModifier, false));
    EXPECT_EQ(results_, std::vector{MailResult::Cancelled});
    results_.clear();
    open();
    EXPECT_TRUE(screen_->pressKey(Qt::Key_Back, Qt::NoModifier, false));
    EXPECT_EQ(results_, std::vector{MailResult::Cancelled});
    EXPECT_TRUE(surroundings_.asked.empty()) << "the delegate closes it";
}

TEST_F(MailComposeViewControllerTest, AFailureIsSaidWithItsReason) {
    openComplete().btnSend.press();
    mail_.end(MailResult::Failed, "mail.example.org refuses connections at port 2525");
    EXPECT_EQ(results_, std::vector{MailResult::Failed});
    EXPECT_EQ(error_, "mail.example.org refuses connections at port 2525");
    EXPECT_EQ(screen_->status.text(), QStringLiteral("mail.example.org refuses connections at port 2525"));
}

TEST_F(MailComposeViewControllerTest, ADraftIsAFileOfTheOwnersInTheFolder) {
    openComplete().btnDraft.press();
    EXPECT_EQ(results_, std::vector{MailResult::Saved});
    ASSERT_EQ(filesInFolder(QStringLiteral("*.eml")), QStringList{QStringLiteral("20240603000000.eml")});
    QFile draft(surroundings_.folder.filePath(QStringLiteral("20240603000000.eml")));
    ASSERT_TRUE(draft.open(QIODevice::ReadOnly));
    EXPECT_TRUE(draft.readAll().startsWith("To: office@example.org\r\nSubject: Plant A\r\n"));
    EXPECT_EQ(draft.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_EQ(surroundings_.notice.text(), QStringLiteral("Saved as ") + draft.fileName());
    EXPECT_EQ(open().server.text(), QStringLiteral("mail.example.org:2525"))
        << "the settings are kept as well";
}

TEST_F(MailComposeViewControllerTest, ADraftNeverGoesThroughALink) {
    QTemporaryDir elsewhere;
    QFile precious(elsewhere.filePath(QStringLiteral("precious")));
    ASSERT_TRUE(precious.open(QIODevice::WriteOnly));
    precious.write("precious");
    precious.close();
    ASSERT_TRUE(precious.link(surroundings_.folder.filePath(QStringLiteral("20240603000000.eml"))));
    openComplete().btnDraft.press();
    EXPECT_TRUE(results_.empty());
    EXPECT_EQ(screen_->state(), State::Editing);
    ASSERT_TRUE(precious.open(QIODevice::ReadOnly));
    EXPECT_EQ(precious.readAll(), "precious");
}

TEST_F(MailComposeViewControllerTest, WhatIsTypedAsTheUserSaysNothingOfTheServer) {
    MailComposeViewController& screen = open();
    screen.user.edit(QStringLiteral("ann"));
    EXPECT_EQ(screen.status.text(), QString());
}

TEST_F(MailComposeViewControllerTest, TellsWhoseCertificatesAreBelievedInPlaceOfTheSystems) {
    surroundings_.defaults.setString(QStringLiteral("mailCaFile"), QStringLiteral("/ca.pem"));
    EXPECT_EQ(open().status.text(), QStringLiteral("Certificates are checked against /ca.pem"));
}

TEST_F(MailComposeViewControllerTest, ADraftNeedsNeitherServerNorRecipient) {
    open().btnDraft.press();
    EXPECT_EQ(results_, std::vector{MailResult::Saved});
}

TEST_F(MailComposeViewControllerTest, ADraftThatCannotBeWrittenIsSaidAndTheMailStays) {
    openComplete();
    surroundings_.folder.remove();
    testing::expectWarning("cannot be written");
    screen_->btnDraft.press();
    EXPECT_TRUE(results_.empty());
    EXPECT_TRUE(screen_->status.text().startsWith(QStringLiteral("The draft was not saved: ")));
    EXPECT_EQ(screen_->state(), State::Editing);
}

TEST_F(MailComposeViewControllerTest, WhereNoMailCanBeSentTheReasonStandsThere) {
    mail_.problem = "the part that sends mails is missing";
    MailComposeViewController& screen = openComplete();
    for (ui::Button* button : {&screen.btnSend, &screen.btnDraft}) {
        button->press();
        EXPECT_EQ(screen.status.text(), QStringLiteral("the part that sends mails is missing"));
        EXPECT_TRUE(results_.empty());
    }
    screen.btnCancel.press();
    EXPECT_EQ(results_, std::vector{MailResult::Cancelled});
}

TEST_F(MailComposeViewControllerTest, AnAnswerOfTheKeyringBehindACancelSendsNothing) {
    mail_.keyringWaits = true;
    mail_.passwords["ann@mail.example.org:2525"] = "secret";
    openComplete("").btnSend.press();
    EXPECT_EQ(screen_->state(), State::Sending);
    screen_->btnCancel.press();
    EXPECT_EQ(results_, std::vector{MailResult::Cancelled});
    mail_.keyringAnswer();
    EXPECT_TRUE(mail_.orders.empty());
    EXPECT_EQ(screen_->state(), State::Ended);
}

TEST_F(MailComposeViewControllerTest, ThatGoesWhileItSendsCallsTheMailBack) {
    openComplete().btnSend.press();
    ASSERT_TRUE(mail_.isOnItsWay());
    screen_.reset();
    EXPECT_FALSE(mail_.isOnItsWay()) << "it is called back when the screen goes";
    EXPECT_TRUE(results_.empty());
}

TEST_F(MailComposeViewControllerTest, ReturnGoesOnToTheNextFieldAndFromTheLastToSend) {
    MailComposeViewController& screen = open();
    int asked = 0;
    for (ui::Control* next : std::initializer_list<ui::Control*>{
             &screen.subject, &screen.server, &screen.user, &screen.password, &screen.from})
        QObject::connect(next, &ui::Control::keyboardAsked, next, [&asked] { ++asked; });
    bool send = false;
    QObject::connect(&screen.btnSend, &ui::Control::keyboardAsked, &screen, [&send] { send = true; });
    for (ui::TextField* field :
         {&screen.recipient, &screen.subject, &screen.server, &screen.user, &screen.password})
        field->pressReturn();
    EXPECT_EQ(asked, 5);
    EXPECT_FALSE(send);
    screen.from.pressReturn();
    EXPECT_TRUE(send);
}

}  // namespace
}  // namespace kestrix::history
