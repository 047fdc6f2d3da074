// What is encrypted, who is believed, and where a password goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <QDir>
#include <QTemporaryDir>

#include <nlohmann/json.hpp>

#include "tests/platform/MailFixture.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::platform {
namespace {

using nlohmann::json;
using testing::certificateAuthority;
using testing::certificateOf;
using ::testing::HasSubstr;
using testing::kMailPassword;
using testing::kMailUser;
using testing::MailServerProgram;
using ::testing::Not;
using ::testing::StartsWith;

using MailEncryption = testing::MailTest;

QStringList encrypted(const char* how, const char* certificate = "localhost") {
    return {QStringLiteral("--tls"), QLatin1String(how), QStringLiteral("--certificate"),
            certificateOf(QLatin1String(certificate))};
}

// Never the loopback by its name, though it is this machine: so it is another one to the transport.
constexpr const char* kAnotherMachine = "0.0.0.0";

std::string base64(const std::string& text) {
    return QByteArray::fromStdString(text).toBase64().toStdString();
}

TEST_F(MailEncryption, BeginsWhereTheServerOffersIt) {
    MailServerProgram server(encrypted("starttls"));
    EXPECT_EQ(send(encryptedOrderTo(server.port())).result, MailResult::Sent);
    EXPECT_EQ(json::parse(server.nextLine())["tls"], true);
}

TEST_F(MailEncryption, FromTheFirstByteOn) {
    MailServerProgram server(encrypted("tls"));
    EXPECT_EQ(send(encryptedOrderTo(server.port(), MailSecurity::Tls)).result, MailResult::Sent);
    EXPECT_EQ(json::parse(server.nextLine())["tls"], true);
}

TEST_F(MailEncryption, TheLoginIsEncrypted) {
    for (const char* how : {"starttls", "tls"}) {
        MailServerProgram server(encrypted(how) + QStringList{"--login"});
        MailOrder order = encryptedOrderTo(
            server.port(), std::string(how) == "tls" ? MailSecurity::Tls : MailSecurity::StartTls);
        logIn(order);
        EXPECT_EQ(send(order).result, MailResult::Sent) << how;
        const json mail = json::parse(server.nextLine());
        EXPECT_EQ(mail["login"], kMailUser) << how;
        EXPECT_EQ(mail["tls"], true) << how;
    }
}

TEST_F(MailEncryption, AWrongPasswordIsSaidInTheServersWords) {
    MailServerProgram server(encrypted("starttls") + QStringList{"--login"});
    MailOrder order = encryptedOrderTo(server.port());
    logIn(order, "wrong horse");
    EXPECT_EQ(failure(order),
              "the server did not accept the user's name or the password: 535 5.7.8 Authentication "
              "credentials invalid");
    EXPECT_TRUE(report_->loginRefused);
    for (const std::string& line : testing::logLines()) EXPECT_THAT(line, Not(HasSubstr("horse")));
}

TEST_F(MailEncryption, AServerThatAsksForAPasswordIsSaidWhenThereIsNone) {
    MailServerProgram server(encrypted("starttls") + QStringList{"--login"});
    EXPECT_THAT(failure(encryptedOrderTo(server.port())), HasSubstr("530 5.7.0 Authentication required"));
}

TEST_F(MailEncryption, AnotherMachineWithoutItGetsNothing) {
    MailServerProgram server;
    EXPECT_EQ(failure(orderTo(server.port(), kAnotherMachine)),
              "the server offers no encryption (STARTTLS), without which nothing is sent to another machine");
    EXPECT_FALSE(server.hasMore());
}

// A server that would take the password in the clear, and keeps all it hears.
TEST_F(MailEncryption, NeitherNameNorPasswordNorMailGoesInTheClearToAnotherMachine) {
    MailServerProgram server({"--at", "never"});
    MailOrder order = orderTo(server.port(), kAnotherMachine);
    logIn(order);
    EXPECT_THAT(failure(order), StartsWith("the server offers no encryption"));
    const std::string heard = json::parse(server.nextLine())["heard"];
    EXPECT_THAT(heard, StartsWith("EHLO "));
    for (const std::string& secret :
         {std::string("AUTH"), std::string("MAIL"), std::string(kMailPassword), std::string(kMailUser),
          base64(std::string(1, '\0') + kMailUser + std::string(1, '\0') + kMailPassword), base64(kMailUser)})
        EXPECT_THAT(heard, Not(HasSubstr(secret)));
}

// The library knows what "localhost" is, so no name can be made to lead elsewhere here.
TEST(MailLoopback, OnlyAddressesOfThisMachineAreOnIt) {
    const auto four = [](const char* text) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        EXPECT_EQ(inet_pton(AF_INET, text, &address.sin_addr), 1);
        return isLoopbackAddress(reinterpret_cast<const sockaddr&>(address));
    };
    const auto six = [](const char* text) {
        sockaddr_in6 address{};
        address.sin6_family = AF_INET6;
        EXPECT_EQ(inet_pton(AF_INET6, text, &address.sin6_addr), 1);
        return isLoopbackAddress(reinterpret_cast<const sockaddr&>(address));
    };
    EXPECT_TRUE(four("127.0.0.1") && four("127.255.255.254") && six("::1"));
    EXPECT_FALSE(four("0.0.0.0") || four("128.0.0.1") || four("192.0.2.1"));
    EXPECT_FALSE(six("::") || six("2001:db8::1") || six("::ffff:192.0.2.1"));
    sockaddr local{};
    local.sa_family = AF_UNIX;
    EXPECT_FALSE(isLoopbackAddress(local));
}

TEST_F(MailEncryption, OnTheLoopbackALoginNeedsNone) {
    MailServerProgram server({"--login"});
    MailOrder order = orderTo(server.port());
    logIn(order);
    EXPECT_EQ(send(order).result, MailResult::Sent);
    EXPECT_EQ(json::parse(server.nextLine())["login"], kMailUser);
}

TEST_F(MailEncryption, ACertificateThatNobodyKnownHasSignedIsNotTrusted) {
    for (const char* how : {"starttls", "tls"}) {
        MailServerProgram server(encrypted(how));
        MailOrder order = encryptedOrderTo(
            server.port(), std::string(how) == "tls" ? MailSecurity::Tls : MailSecurity::StartTls);
        for (const std::string& believed : {std::string(), testing::strangeAuthority().toStdString()}) {
            order.server.caFile = believed;
            EXPECT_THAT(failure(order),
                        StartsWith("the certificate of localhost is not trusted: unable to get "))
                << how << ", believing " << believed;
        }
        EXPECT_FALSE(server.hasMore());
    }
}

TEST_F(MailEncryption, ACertificateOfAnotherMachineIsNotTrusted) {
    for (const char* how : {"starttls", "tls"}) {
        MailServerProgram server(encrypted(how, "other"));
        EXPECT_EQ(failure(encryptedOrderTo(
                      server.port(), std::string(how) == "tls" ? MailSecurity::Tls : MailSecurity::StartTls)),
                  "the certificate of localhost is not trusted: it is another machine's")
            << how;
        EXPECT_FALSE(server.hasMore());
    }
}

TEST_F(MailEncryption, AServerWithoutItWhereItIsToBeginWithItIsSaid) {
    MailServerProgram server;
    const std::string port = std::to_string(server.port());
    EXPECT_THAT(failure(encryptedOrderTo(server.port(), MailSecurity::Tls)),
                StartsWith("no encrypted connection to localhost:" + port + ": "));
}

TEST_F(MailEncryption, AFileOfCertificatesThatHoldsNoneIsNamed) {
    MailServerProgram server(encrypted("starttls"));
    MailOrder order = encryptedOrderTo(server.port());
    order.server.caFile = KESTRIX_SOURCE_DIR "/README.md";
    EXPECT_EQ(failure(order), "the file of certificates, " KESTRIX_SOURCE_DIR "/README.md, cannot be used");
}

TEST_F(MailEncryption, SendingLeavesNoFileBehind) {
    const QTemporaryDir folder;
    const QByteArray before = qgetenv("HOME");
    const QByteArray temporary = qgetenv("TMPDIR");
    MailServerProgram server(encrypted("starttls") + QStringList{"--login"});
    qputenv("HOME", folder.path().toUtf8());
    qputenv("TMPDIR", folder.path().toUtf8());
    MailOrder order = encryptedOrderTo(server.port());
    logIn(order);
    attach(order, 2'000'000);
    EXPECT_EQ(send(std::move(order)).result, MailResult::Sent);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());
    qputenv("HOME", before);
    qputenv("TMPDIR", temporary);
}

}  // namespace
}  // namespace kestrix::platform
