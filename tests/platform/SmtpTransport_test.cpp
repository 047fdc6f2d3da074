#include "platform/SmtpTransport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QTcpServer>
#include <QTimer>

#include <nlohmann/json.hpp>

#include <set>

#include "tests/platform/MailFixture.h"

namespace kestrix::platform {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using testing::MailServerProgram;
using ::testing::StartsWith;

using SmtpTransportTest = testing::MailTest;

std::map<std::string, std::string> headersOf(const json& mail) {
    std::map<std::string, std::string> headers;
    for (const auto& [name, value] :
         mail["headers"].get<std::vector<std::pair<std::string, std::string>>>()) {
        EXPECT_TRUE(headers.emplace(name, value).second) << name << " stands there twice";
    }
    return headers;
}

std::string contentOf(const json& part) {
    return QByteArray::fromBase64(QByteArray::fromStdString(part["content"].get<std::string>()))
        .toStdString();
}

TEST_F(SmtpTransportTest, AMailArrivesAsItIs) {
    MailServerProgram server;
    MailOrder order = orderTo(server.port());
    order.message.subject = "Prüfprotokoll Ω";
    order.message.date = std::chrono::system_clock::time_point(std::chrono::seconds(1772366400));
    order.message.attachment =
        MailAttachment{"20260301120000.csv", "csv", std::string("\xff\xfeN\0a\0\n\0", 8)};
    const MailReport report = send(order);
    EXPECT_EQ(report.result, MailResult::Sent);
    EXPECT_EQ(report.why, "");

    const json mail = json::parse(server.nextLine());
    EXPECT_EQ(mail["from"], "me@example.org");
    EXPECT_EQ(mail["recipients"], json({"you@example.org"}));
    const auto headers = headersOf(mail);
    EXPECT_EQ(headers.at("From"), "me@example.org");
    EXPECT_EQ(headers.at("To"), "you@example.org");
    EXPECT_EQ(headers.at("Subject"), "Prüfprotokoll Ω");
    EXPECT_EQ(headers.at("Date"), "Sun, 01 Mar 2026 12:00:00 +0000");
    EXPECT_THAT(headers.at("Message-ID"), ::testing::MatchesRegex("<[0-9a-f]{32}@example\\.org>"));
    ASSERT_EQ(mail["parts"].size(), 2U);
    EXPECT_EQ(mail["parts"][0]["type"], "text/html");
    EXPECT_EQ(mail["parts"][0]["charset"], "utf-8");
    EXPECT_EQ(contentOf(mail["parts"][0]), "<H5>Kestrix Safety Tester</H5>\r\n");
    EXPECT_EQ(mail["parts"][1]["type"], "text/csv");
    EXPECT_EQ(mail["parts"][1]["name"], "20260301120000.csv");
    EXPECT_EQ(contentOf(mail["parts"][1]), order.message.attachment->content);
    EXPECT_EQ(mail["bareLineEnds"], 0);
}

TEST_F(SmtpTransportTest, TheServerHearsNoNameOfThisMachine) {
    MailServerProgram server;
    EXPECT_EQ(send(orderTo(server.port())).result, MailResult::Sent);
    EXPECT_EQ(json::parse(server.nextLine())["greeting"], "[127.0.0.1]");
}

TEST_F(SmtpTransportTest, LinesThatBeginWithADotArriveAsTheyAre) {
    MailServerProgram server;
    MailOrder order = orderTo(server.port());
    order.message.htmlBody = ".\n..\n.x\n";
    EXPECT_EQ(send(order).result, MailResult::Sent);
    EXPECT_EQ(contentOf(json::parse(server.nextLine())["parts"][0]), ".\r\n..\r\n.x\r\n\r\n");
}

TEST_F(SmtpTransportTest, SeveralMailsGoOneAfterTheOther) {
    MailServerProgram server;
    std::set<std::string> identities;
    for (const char* subject : {"first", "second", "third"}) {
        MailOrder order = orderTo(server.port());
        order.message.subject = subject;
        ASSERT_EQ(send(order).result, MailResult::Sent);
        const auto headers = headersOf(json::parse(server.nextLine()));
        EXPECT_EQ(headers.at("Subject"), subject);
        identities.insert(headers.at("Message-ID"));
    }
    EXPECT_EQ(identities.size(), 3U);
    EXPECT_EQ(endings_, 3);
}

TEST_F(SmtpTransportTest, TheEndOfAMailMaySendTheNext) {
    MailServerProgram server;
    std::vector<MailResult> results;
    transport_->send(orderTo(server.port()), nullptr, [&](const MailReport& first) {
        results.push_back(first.result);
        transport_->send(orderTo(server.port()), nullptr,
                         [&](const MailReport& second) { results.push_back(second.result); });
    });
    EXPECT_TRUE(testing::spinUntil([&] { return results.size() == 2; }));
    EXPECT_EQ(results, (std::vector{MailResult::Sent, MailResult::Sent}));
}

TEST_F(SmtpTransportTest, ASecondMailMeanwhileFailsAndTheFirstGoesOn) {
    MailServerProgram server;
    begin(orderTo(server.port()));
    std::string why;
    transport_->send(orderTo(server.port()), nullptr, [&](const MailReport& report) { why = report.why; });
    EXPECT_EQ(waitForTheEnd().result, MailResult::Sent);
    EXPECT_EQ(why, "a mail is on its way already");
}

// The event loop goes round while the mail is made and sent: turns are counted, and no time is taken.
TEST_F(SmtpTransportTest, TwentyMegabytesArriveWhileTheEventLoopGoesOn) {
    MailServerProgram server;
    MailOrder order = orderTo(server.port());
    attach(order, 20U << 20U);
    const auto hash = QCryptographicHash::hash(QByteArray::fromStdString(order.message.attachment->content),
                                               QCryptographicHash::Sha256);
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(0);
    EXPECT_EQ(send(std::move(order)).result, MailResult::Sent);
    EXPECT_GT(ticks, 100);
    EXPECT_GT(progressCalls_, 5);
    EXPECT_GT(all_, 27'000'000U);
    EXPECT_EQ(sent_, all_);
    const json mail = json::parse(server.nextLine());
    EXPECT_EQ(mail["parts"][1]["size"], 20U << 20U);
    EXPECT_EQ(mail["parts"][1]["sha256"], hash.toHex().toStdString());
}

TEST_F(SmtpTransportTest, ARefusedRecipientIsNamed) {
    MailServerProgram server({"--reject", "recipient"});
    EXPECT_EQ(
        failure(orderTo(server.port())),
        "the server refuses the recipient you@example.org: 550 5.1.1 nobody of this name \uFFFD[31mhere");
    EXPECT_FALSE(report_->loginRefused);
}

TEST_F(SmtpTransportTest, ARefusedSenderIsNamed) {
    MailServerProgram server({"--reject", "sender"});
    EXPECT_EQ(failure(orderTo(server.port())),
              "the server refuses the sender me@example.org: 553 5.7.1 not yours");
}

TEST_F(SmtpTransportTest, ARefusedMailIsSaidInTheServersWords) {
    MailServerProgram server({"--reject", "content"});
    EXPECT_EQ(failure(orderTo(server.port())), "the server refuses the mail: 554 5.7.1 this looks like spam");
}

TEST_F(SmtpTransportTest, AMailThatIsTooLargeIsRefusedAsAMail) {
    MailServerProgram server({"--size", "100000"});
    MailOrder order = orderTo(server.port());
    attach(order, 200'000);
    EXPECT_THAT(failure(order), StartsWith("the server refuses the mail: 552 "));
}

TEST_F(SmtpTransportTest, AServerThatRefusesConnectionsIsNamedWithItsPort) {
    QTcpServer listener;
    ASSERT_TRUE(listener.listen(QHostAddress::LocalHost));
    const std::uint16_t port = listener.serverPort();
    listener.close();
    EXPECT_EQ(failure(orderTo(port, "127.0.0.1")),
              "127.0.0.1 refuses connections at port " + std::to_string(port));
}

// Whether a name server says so or none answers.
TEST_F(SmtpTransportTest, AnUnknownNameIsSaid) {
    transport_ =
        std::make_unique<SmtpTransport>(SmtpLimits{std::chrono::seconds(3), std::chrono::seconds(3)});
    EXPECT_THAT(failure(orderTo(25, "mail.nowhere.invalid")),
                StartsWith("mail.nowhere.invalid is not known"));
}

TEST_F(SmtpTransportTest, AServerThatSaysNothingEndsTheMailAfterItsTime) {
    MailServerProgram server({"--at", "greeting"});
    transport_ =
        std::make_unique<SmtpTransport>(SmtpLimits{std::chrono::seconds(1), std::chrono::seconds(1)});
    EXPECT_EQ(failure(orderTo(server.port())), "the server does not answer");
}

TEST_F(SmtpTransportTest, AServerThatFallsSilentBehindTheMailEndsItAfterItsTime) {
    MailServerProgram server({"--at", "end"});
    transport_ =
        std::make_unique<SmtpTransport>(SmtpLimits{std::chrono::seconds(15), std::chrono::seconds(2)});
    const platform::MailReport report = send(orderTo(server.port()));
    EXPECT_EQ(report.result, MailResult::Failed);
    EXPECT_EQ(report.why, "the server had the whole mail, and did not answer: it may have taken it");
    EXPECT_TRUE(report.mayBeSent);
}

TEST_F(SmtpTransportTest, ACancelBehindTheWholeMailSaysThatItMayHaveBeenTaken) {
    MailServerProgram server({"--at", "end"});
    begin(orderTo(server.port()));
    ASSERT_TRUE(server.nextLine().contains("reached"));
    transport_->cancel();
    const platform::MailReport report = waitForTheEnd();
    EXPECT_EQ(report.result, MailResult::Cancelled);
    EXPECT_TRUE(report.mayBeSent);
    EXPECT_NE(report.why, "");
}

TEST_F(SmtpTransportTest, ACancelBeforeSaysNothingOfTheKind) {
    MailServerProgram server({"--at", "DATA"});
    begin(orderTo(server.port()));
    ASSERT_TRUE(server.nextLine().contains("reached"));
    transport_->cancel();
    const platform::MailReport report = waitForTheEnd();
    EXPECT_EQ(report.result, MailResult::Cancelled);
    EXPECT_FALSE(report.mayBeSent);
}

TEST_F(SmtpTransportTest, AServerThatTakesNoLoginGetsNoMailOfAUser) {
    MailServerProgram server({"--at", "never", "--no-login"});
    MailOrder order = orderTo(server.port());
    logIn(order);
    const platform::MailReport report = send(order);
    EXPECT_EQ(report.result, MailResult::Failed);
    EXPECT_EQ(report.why, "the server takes no login with a name and a password");
    EXPECT_TRUE(report.loginRefused);
    const QByteArray heard = server.nextLine();
    EXPECT_TRUE(heard.contains("EHLO")) << heard.toStdString();
    EXPECT_FALSE(heard.contains("Subject")) << heard.toStdString();
}

TEST_F(SmtpTransportTest, AServerThatStopsReadingEndsTheMailAfterItsTime) {
    MailServerProgram server({"--at", "content", "--then", "stall"});
    transport_ =
        std::make_unique<SmtpTransport>(SmtpLimits{std::chrono::seconds(15), std::chrono::seconds(2)});
    MailOrder order = orderTo(server.port());
    attach(order, 20U << 20U);
    EXPECT_THAT(failure(order), StartsWith("the server does not answer"));
}

TEST_F(SmtpTransportTest, AServerThatBreaksOffInTheMidstOfTheMailIsSaid) {
    MailServerProgram server({"--at", "content", "--then", "break"});
    MailOrder order = orderTo(server.port());
    attach(order, 20U << 20U);
    EXPECT_EQ(failure(order), "the connection broke while sending");
}

TEST_F(SmtpTransportTest, AServerThatBreaksOffAtOnceIsSaid) {
    MailServerProgram server({"--at", "greeting", "--then", "break"});
    EXPECT_EQ(failure(orderTo(server.port())),
              "the server broke the connection off before the mail was sent");
}

// It has the mail: that it never says goodbye changes nothing.
TEST_F(SmtpTransportTest, AMailThatIsAcceptedIsSentWhateverComesAfterIt) {
    MailServerProgram server({"--at", "QUIT"});
    EXPECT_EQ(send(orderTo(server.port())).result, MailResult::Sent);
}

TEST_F(SmtpTransportTest, WhatIsWrongWithAnOrderIsSaidBeforeAnythingIsSent) {
    MailServerProgram server({"--at", "never"});
    MailOrder order = orderTo(server.port());
    order.message.recipient = "-";
    EXPECT_EQ(failure(order), "type the recipient's address");
    order.message.recipient = "you@example.org\r\nRCPT TO:<other@example.org>";
    EXPECT_EQ(failure(order), "the recipient's address does not look like name@example.org");
    order = orderTo(server.port(), "no host");
    EXPECT_EQ(failure(order), "\"no host\" is no name of a mail server");
    EXPECT_FALSE(server.hasMore());
}

}  // namespace
}  // namespace kestrix::platform
