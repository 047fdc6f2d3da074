#include "platform/MailModule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include "tests/platform/MailServer.h"
#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const QString kModule = QStringLiteral(KESTRIX_MAIL_MODULE_FILE);

TEST(MailModule, BringsAMailToItsServer) {
    testing::MailServerProgram server;
    const MailParts parts = loadMail(kModule);
    ASSERT_EQ(parts.problem, "");
    ASSERT_NE(parts.transport, nullptr);
    EXPECT_NE(parts.keyring, nullptr);
    MailOrder order;
    order.server.host = "localhost";
    order.server.port = server.port();
    order.message.from = order.message.recipient = "me@example.org";
    std::optional<MailReport> report;
    parts.transport->send(order, nullptr, [&](const MailReport& ended) { report = ended; });
    EXPECT_TRUE(testing::spinUntil([&] { return report.has_value(); }));
    EXPECT_EQ(report->result, MailResult::Sent) << report->why;
    EXPECT_NE(server.nextLine(), "");
}

TEST(MailModule, EachLoadMakesItsOwn) {
    const MailParts one = loadMail(kModule);
    const MailParts other = loadMail(kModule);
    EXPECT_NE(one.transport, other.transport);
}

TEST(MailModule, OneThatIsNotThereIsSaidInOneLine) {
    const MailParts parts = loadMail(QStringLiteral("/nowhere/kestrix-mail.so"));
    EXPECT_EQ(parts.transport, nullptr);
    EXPECT_EQ(parts.keyring, nullptr);
    EXPECT_THAT(parts.problem, StartsWith("the installation is not complete, no mail can be sent: "));
    EXPECT_THAT(parts.problem, HasSubstr("/nowhere/kestrix-mail.so"));
}

TEST(MailModule, AFileThatIsNoneIsSaidInOneLine) {
    const MailParts parts = loadMail(QStringLiteral(KESTRIX_SOURCE_DIR "/README.md"));
    EXPECT_EQ(parts.transport, nullptr);
    EXPECT_THAT(parts.problem, StartsWith("the installation is not complete, no mail can be sent: "));
}

TEST(MailModule, LiesBesideTheProgramsAsItIsInstalled) {
    EXPECT_TRUE(QFile::exists(QStringLiteral(KESTRIX_BINARY_DIR "/bin/" KESTRIX_MAIL_MODULE_PLACE)));
}

}  // namespace
}  // namespace kestrix::platform
