// A test record goes out by mail, from the window to a server on the loopback: the real module, the real
// thread.

#include <QTimer>

#include "tests/platform/MailServer.h"
#include "tests/shell/MailScreenFixture.h"
#include "tests/support/EventLoop.h"

namespace kestrix::shell {
namespace {

using testing::MailServerProgram;
using testing::spinUntil;

class MailRoad : public MailScreenFixture {
  protected:
    MailRoad() {
        options_.loadMail = [this] {
            platform::MailParts parts = platform::loadMail(QStringLiteral(KESTRIX_MAIL_MODULE_FILE));
            parts.keyring = mail_.parts().keyring;  // not that of whoever runs the tests
            return parts;
        };
    }
    void completeFor(const MailServerProgram& server, const char* user, const char* password) {
        type("recipient", "office@example.org");
        type("server", ("127.0.0.1:" + std::to_string(server.port())).c_str());
        type("user", user);
        type("password", password);
        type("from", "ann@example.org");
    }
    // The alert with which it ends.
    QString alertAtTheEnd() {
        EXPECT_TRUE(spinUntil([this] { return app().alerts().isShown(); }));
        settle();
        return app().alerts().text();
    }
};

TEST_F(MailRoad, IsAcceptedByTheServerWithItsTextAndLeavesNoFile) {
    MailServerProgram server({"--login"});
    openMail();
    completeFor(server, "tester@example.org", "correct horse");
    tap("btnSend");
    EXPECT_EQ(alertAtTheEnd(), QStringLiteral("Mail sent successfully"));
    const QByteArray mail = server.nextLine();
    EXPECT_TRUE(mail.contains("\"office@example.org\"")) << mail.toStdString();
    EXPECT_TRUE(mail.contains("\"tester@example.org\""));
    EXPECT_TRUE(mail.contains(".csv"));
    EXPECT_EQ(texts().size(), 0);
    click("alertButton0");
    settle();
    EXPECT_EQ(shown(), ScreenId::History);
}

TEST_F(MailRoad, AWrongPasswordFailsAndItsReasonIsSaid) {
    MailServerProgram server({"--login"});
    openMail();
    completeFor(server, "tester@example.org", "battery staple");
    tap("btnSend");
    EXPECT_EQ(alertAtTheEnd(), QStringLiteral("Failed to send mail"));
    click("alertButton0");
    settle();
    EXPECT_EQ(shown(), ScreenId::History);
    EXPECT_TRUE(app().notice().text().contains(QStringLiteral("password")))
        << app().notice().text().toStdString();
    EXPECT_EQ(texts().size(), 0);
    EXPECT_FALSE(server.hasMore());
}

TEST_F(MailRoad, WhileAServerIsSilentTheWindowGoesOnAndTheMailCanBeCancelled) {
    MailServerProgram server({"--at", "DATA"});
    openMail();
    completeFor(server, "", "");
    tap("btnSend");
    ASSERT_TRUE(server.nextLine().contains("reached"));
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&turns] { ++turns; });
    timer.start(0);
    EXPECT_TRUE(spinUntil([&turns] { return turns > 100; })) << "the window's thread does not wait";
    const int before = frames();
    app().notice().show(QStringLiteral("drawn meanwhile"));
    EXPECT_TRUE(spinUntil([&] { return frames() > before; }));
    tap("btnCancel");
    EXPECT_EQ(alertAtTheEnd(), QStringLiteral("Mail Send Cancel"));
    EXPECT_EQ(shown(), ScreenId::History);
    EXPECT_EQ(texts().size(), 0);
}

TEST_F(MailRoad, ClosingTheApplicationWhileItSendsLeavesNoFile) {
    MailServerProgram server({"--at", "DATA"});
    openMail();
    completeFor(server, "", "");
    tap("btnSend");
    ASSERT_TRUE(server.nextLine().contains("reached"));
    const QDir folder(app().documents().path());
    stop();
    EXPECT_EQ(folder.entryList({QStringLiteral("*.csv")}, QDir::Files), QStringList());
}

}  // namespace
}  // namespace kestrix::shell
