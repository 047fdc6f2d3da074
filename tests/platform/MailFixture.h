#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/SmtpTransport.h"
#include "tests/platform/MailServer.h"
#include "tests/support/EventLoop.h"

namespace kestrix::testing {

inline constexpr const char* kMailUser = "tester@example.org";
inline constexpr const char* kMailPassword = "correct horse";

// A transport, and how its mail ended.
class MailTest : public ::testing::Test {
  protected:
    static platform::MailOrder orderTo(std::uint16_t port, const std::string& host = "localhost") {
        platform::MailOrder order;
        order.server.host = host;
        order.server.port = port;
        order.message.from = "me@example.org";
        order.message.recipient = "you@example.org";
        order.message.subject = "Plant A";
        order.message.htmlBody = "<H5>Kestrix Safety Tester</H5>";
        return order;
    }
    static platform::MailOrder encryptedOrderTo(
        std::uint16_t port, platform::MailSecurity security = platform::MailSecurity::StartTls) {
        platform::MailOrder order = orderTo(port);
        order.server.security = security;
        order.server.caFile = certificateAuthority().toStdString();
        return order;
    }
    static void logIn(platform::MailOrder& order, const std::string& password = kMailPassword) {
        order.server.user = kMailUser;
        order.password = password;
    }
    // Bytes that compress to nothing a proxy or an encoder could skip.
    static void attach(platform::MailOrder& order, std::size_t bytes) {
        platform::MailAttachment attachment{"20260301120000.csv", "csv", std::string(bytes, '\0')};
        std::uint32_t state = 1;
        for (char& byte : attachment.content) {
            state = state * 1664525U + 1013904223U;
            byte = static_cast<char>(state >> 24U);
        }
        order.message.attachment = std::move(attachment);
    }

    void begin(platform::MailOrder order) {
        report_.reset();
        transport_->send(
            std::move(order),
            [this](std::uint64_t sent, std::uint64_t all) {
                ++progressCalls_;
                sent_ = sent;
                all_ = all;
            },
            [this](const platform::MailReport& report) {
                ++endings_;
                report_ = report;
            });
    }
    platform::MailReport waitForTheEnd() {
        spinUntil([this] { return report_.has_value(); });
        EXPECT_TRUE(report_.has_value()) << "the mail never ended";
        return report_.value_or(platform::MailReport{});
    }
    platform::MailReport send(platform::MailOrder order) {
        begin(std::move(order));
        return waitForTheEnd();
    }
    // Why a mail failed; says so when it did not.
    std::string failure(platform::MailOrder order) {
        const platform::MailReport report = send(std::move(order));
        EXPECT_EQ(report.result, platform::MailResult::Failed);
        return report.why;
    }

    std::unique_ptr<platform::SmtpTransport> transport_ = std::make_unique<platform::SmtpTransport>();
    std::optional<platform::MailReport> report_;
    int endings_ = 0;
    int progressCalls_ = 0;
    std::uint64_t sent_ = 0;
    std::uint64_t all_ = 0;
};

}  // namespace kestrix::testing
