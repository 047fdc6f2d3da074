// A mail that is not waited for. The servers here would hold it for 30 s and more: a test that passes has not
// waited for them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/platform/MailFixture.h"

namespace kestrix::platform {
namespace {

using nlohmann::json;
using testing::MailServerProgram;

class CancelledMail : public testing::MailTest {
  protected:
    // No limit of its own ends a mail here before spinUntil gives up.
    CancelledMail() {
        transport_ =
            std::make_unique<SmtpTransport>(SmtpLimits{std::chrono::minutes(10), std::chrono::minutes(10)});
    }
    void beginLargeMail(const MailServerProgram& server) {
        MailOrder order = orderTo(server.port());
        attach(order, 20U << 20U);
        begin(std::move(order));
    }
    // The server has come to its step, where it holds the mail.
    static void waitForTheStep(MailServerProgram& server) {
        EXPECT_TRUE(json::parse(server.nextLine()).contains("reached"));
    }
};

TEST_F(CancelledMail, EndsWhileTheServerReadsNoMore) {
    MailServerProgram server({"--at", "content", "--then", "stall"});
    beginLargeMail(server);
    waitForTheStep(server);
    transport_->cancel();
    EXPECT_EQ(waitForTheEnd().result, MailResult::Cancelled);
    EXPECT_LT(sent_, all_);
}

TEST_F(CancelledMail, EndsWhereverTheServerIsSilent) {
    for (const char* step : {"greeting", "EHLO", "MAIL", "RCPT", "DATA", "end"}) {
        MailServerProgram server({"--at", step});
        begin(orderTo(server.port()));
        waitForTheStep(server);
        transport_->cancel();
        EXPECT_EQ(waitForTheEnd().result, MailResult::Cancelled) << step;
    }
}

TEST_F(CancelledMail, EndsAtTheVeryBeginning) {
    MailServerProgram server({"--at", "greeting"});
    begin(orderTo(server.port()));
    transport_->cancel();
    transport_->cancel();
    EXPECT_EQ(waitForTheEnd().result, MailResult::Cancelled);
    EXPECT_EQ(endings_, 1);
}

TEST_F(CancelledMail, LetsTheNextOneGo) {
    MailServerProgram silent({"--at", "RCPT"});
    begin(orderTo(silent.port()));
    waitForTheStep(silent);
    transport_->cancel();
    EXPECT_EQ(waitForTheEnd().result, MailResult::Cancelled);
    MailServerProgram server;
    EXPECT_EQ(send(orderTo(server.port())).result, MailResult::Sent);
}

TEST_F(CancelledMail, CancelWithoutAMailDoesNothing) {
    transport_->cancel();
    MailServerProgram server;
    EXPECT_EQ(send(orderTo(server.port())).result, MailResult::Sent);
    transport_->cancel();
    EXPECT_EQ(endings_, 1);
}

TEST_F(CancelledMail, ATransportThatIsDestroyedMeanwhileCallsNobodyAndLetsTheServerGo) {
    for (const char* step : {"greeting", "RCPT", "content", "end"}) {
        MailServerProgram server({"--at", step});
        beginLargeMail(server);
        waitForTheStep(server);
        transport_ = std::make_unique<SmtpTransport>();
        // The server sees the connection end, and only then tells what it heard.
        EXPECT_TRUE(json::parse(server.nextLine()).contains("heard")) << step;
    }
    EXPECT_EQ(endings_, 0);
}

TEST_F(CancelledMail, TheEndOfAMailMayDestroyTheTransport) {
    MailServerProgram server;
    bool over = false;
    transport_->send(orderTo(server.port()), nullptr, [&](const MailReport& report) {
        EXPECT_EQ(report.result, MailResult::Sent);
        transport_.reset();
        over = true;
    });
    EXPECT_TRUE(testing::spinUntil([&] { return over; }));
}

}  // namespace
}  // namespace kestrix::platform
