// A test record goes out by mail, through the window: the user's road, by finger and by keys.

#include <QClipboard>
#include <QGuiApplication>

#include "tests/shell/MailScreenFixture.h"

namespace kestrix::shell {
namespace {

using MailScreen = MailScreenFixture;

TEST_F(MailScreen, IsTypedAndSentAndClosesOnceItsAlertIsConfirmed) {
    openMail();
    ASSERT_EQ(shown(), ScreenId::MailCompose);
    EXPECT_EQ(texts().size(), 1);
    complete();
    EXPECT_EQ(text("status"), QString());
    tap("btnSend");
    settle();
    ASSERT_EQ(mail_.orders.size(), 1U);
    EXPECT_EQ(mail_.orders[0].message.recipient, "office@example.org");
    EXPECT_EQ(mail_.orders[0].password, "secret");
    mail_.sendSoFar(30, 100);
    settle();
    EXPECT_NEAR(placeOf("mailProgress").width(), 0.3 * 296, 0.01);
    mail_.end(MailResult::Sent);
    settle();
    EXPECT_EQ(shown(), ScreenId::MailCompose) << "until the alert is confirmed";
    EXPECT_EQ(app().alerts().text(), QStringLiteral("Mail sent successfully"));
    EXPECT_EQ(texts().size(), 0);
    click("alertButton0");
    settle();
    EXPECT_EQ(shown(), ScreenId::History);
}

TEST_F(MailScreen, ThatIsCancelledLeadsBackToWhereTheRecordWasChosen) {
    openMail();
    tap("btnCancel");
    settle();
    EXPECT_EQ(shown(), ScreenId::History);
    EXPECT_EQ(app().alerts().text(), QStringLiteral("Mail Send Cancel"));
    EXPECT_EQ(texts().size(), 0);
    click("alertButton0");
    settle();
    EXPECT_EQ(app().screens().topmost(), nullptr) << "the history closes as well";
}

TEST_F(MailScreen, EscapeCancelsItWhereverTheKeyboardIs) {
    openMail();
    click("subject");
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_EQ(app().alerts().text(), QStringLiteral("Mail Send Cancel"));
    EXPECT_EQ(shown(), ScreenId::History);
}

TEST_F(MailScreen, ThePasswordIsDrawnAsDotsAndReadByNobody) {
    openMail();
    type("password", "secret");
    settle();
    QQuickItem& input = item("password");
    EXPECT_FALSE(input.property("displayText").toString().contains(QStringLiteral("secret")));
    EXPECT_TRUE(input.property("inputMethodHints").toInt() & Qt::ImhSensitiveData);
    pressKey(Qt::Key_A, Qt::ControlModifier);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_NE(QGuiApplication::clipboard()->text(), QStringLiteral("secret"));
}

TEST_F(MailScreen, WhatIsWrongStandsBelowAndTheKeyboardGoesThere) {
    openMail();
    complete();
    type("from", "ann@example org");
    click("btnSend");
    settle();
    EXPECT_TRUE(mail_.orders.empty());
    EXPECT_EQ(focused(), "from");
    EXPECT_EQ(item("status").property("text").toString(),
              QStringLiteral("The sender's address does not look like name@example.org"));
}

TEST_F(MailScreen, NothingOfItStandsOverAnotherAtTheLeastHeight) {
    openMail({320, 480});
    const char* const parts[] = {"recipientGround", "subjectGround", "serverGround", "userGround",
                                 "passwordGround",  "fromGround",    "status",       "btnDraft"};
    double bottom = 0;
    for (const char* part : parts) {
        EXPECT_GE(placeOf(part).top(), bottom) << part;
        bottom = placeOf(part).bottom();
    }
    EXPECT_LE(bottom, 480);
    EXPECT_LE(placeOf("serverGround").right(), placeOf("btnSecurity").left());
    EXPECT_LE(placeOf("btnCancel").right(), placeOf("screenTitle").left() + 60);
}

}  // namespace
}  // namespace kestrix::shell
