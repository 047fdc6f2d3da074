// `kestrix-cli export --mail`, as a whole program, with a mail server on the loopback.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/DateText.h"
#include "tests/cli/ExportFixture.h"
#include "tests/platform/MailServer.h"

namespace kestrix::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MailServerProgram;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kPassword = "correct horse\n";  // of the server's user

class ExportMail : public ExportFixture {
  protected:
    ~ExportMail() override {
        EXPECT_THAT(filesIn(path_), Not(::testing::Contains(::testing::EndsWith(".csv"))))
            << "a mail leaves no file behind";
    }
    static std::string uri(const MailServerProgram& server, const std::string& user = {}) {
        return "smtp://" + (user.empty() ? user : user + "@") + "127.0.0.1:" + std::to_string(server.port());
    }
    std::vector<std::string> to(const std::string& server, std::vector<std::string> more = {}) const {
        more.insert(more.end(),
                    {"--mail", "office@example.org", "--from", "ann@example.org", "--smtp", server});
        return more;
    }
    // The mail that the server has taken.
    static nlohmann::json mailOf(MailServerProgram& server) {
        return nlohmann::json::parse(server.nextLine().toStdString());
    }
};

TEST_F(ExportMail, IsSentAndSaysSo) {
    MailServerProgram server;
    const Result result = exported(to(uri(server)));
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(complaintsIn(result.error),
                ElementsAre("kestrix-cli: the mail to office@example.org was sent through 127.0.0.1"));
    const nlohmann::json mail = mailOf(server);
    EXPECT_EQ(mail["from"], "ann@example.org");
    EXPECT_EQ(mail["recipients"], nlohmann::json::array({"office@example.org"}));
    ASSERT_EQ(mail["parts"].size(), 2U);
    EXPECT_EQ(mail["parts"][0]["type"], "text/html");
    EXPECT_THAT(mail["parts"][1]["name"].get<std::string>(), MatchesRegex("[0-9]{14}\\.csv"));
    const QByteArray content =
        QByteArray::fromBase64(QByteArray::fromStdString(mail["parts"][1]["content"].get<std::string>()));
    EXPECT_THAT(utf16(content.toStdString()).toStdString(), HasSubstr("House 7     Volt & Sons"));
}

TEST_F(ExportMail, TakesTheReportWhenItIsAskedFor) {
    MailServerProgram server;
    EXPECT_EQ(exported(to(uri(server), {"--pdf"})).status, 0);
    const nlohmann::json mail = mailOf(server);
    EXPECT_EQ(mail["parts"][1]["type"], "application/pdf");
    EXPECT_THAT(mail["parts"][1]["name"].get<std::string>(), ::testing::EndsWith(".pdf"));
}

TEST_F(ExportMail, ReadsThePasswordFromItsInput) {
    MailServerProgram server(
        {"--tls", "starttls", "--certificate", testing::certificateOf("localhost"), "--login"});
    const std::string authority = testing::certificateAuthority().toStdString();
    const std::vector<std::string> words =
        to(uri(server, "tester%40example.org"), {"--cafile", authority, "--password-stdin"});
    const Result sent = exported(words, {}, kPassword);
    EXPECT_EQ(sent.status, 0) << sent.error;
    const nlohmann::json mail = mailOf(server);
    EXPECT_EQ(mail["tls"], true);
    EXPECT_EQ(mail["login"], "tester@example.org");
    EXPECT_EQ(exported(words, {}, "correct horse\r\n").status, 0) << "as a file of another system has it";
    EXPECT_EQ(exported(words, {}, "correct horse").status, 0);
    mailOf(server);
    mailOf(server);
    const Result wrong = exported(words, {}, "battery staple\n");
    EXPECT_EQ(wrong.status, 1);
    EXPECT_THAT(complaintsIn(wrong.error), ElementsAre(StartsWith("kestrix-cli: the mail was not sent: ")));
    EXPECT_THAT(wrong.error, HasSubstr("password"));
    EXPECT_THAT(wrong.error, Not(HasSubstr("battery")));
    const Result tooLong = exported(words, {}, std::string(5000, 'x') + "\n");
    EXPECT_EQ(tooLong.status, 1);
    EXPECT_THAT(complaintsIn(tooLong.error),
                ElementsAre("kestrix-cli: the password on standard input has more than 4096 bytes"));
    const Result nobodys = exported(to(uri(server), {"--password-stdin"}), {}, kPassword);
    EXPECT_EQ(nobodys.status, 2);
    EXPECT_THAT(complaintsIn(nobodys.error), ElementsAre(HasSubstr("the server has no user")));
    const Result none = exported(words);
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(complaintsIn(none.error), ElementsAre("kestrix-cli: there is no password on standard input"));
}

TEST_F(ExportMail, WithoutAKeyringItSaysHowElseThePasswordComes) {
    MailServerProgram server;
    const Result result =
        exported(to(uri(server, "ann")), {.environment = {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error), ElementsAre(HasSubstr("--password-stdin")));
}

TEST_F(ExportMail, AnUntrustedCertificateIsRefused) {
    MailServerProgram server({"--tls", "starttls", "--certificate", testing::certificateOf("localhost")});
    const Result result = exported(to(uri(server)));
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error), ElementsAre(HasSubstr("certificate")));
    EXPECT_FALSE(server.hasMore());
}

TEST_F(ExportMail, ARefusedRecipientIsSaidInTheServersWords) {
    MailServerProgram server({"--reject", "recipient"});
    const Result result = exported(to(uri(server)));
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error), ElementsAre(HasSubstr("550")));
    EXPECT_THAT(result.error, Not(HasSubstr("\x1b")));
}

TEST_F(ExportMail, ASignalCancelsIt) {
    MailServerProgram server({"--at", "DATA"});
    Program program(words(to(uri(server))));
    ASSERT_THAT(server.nextLine().toStdString(), HasSubstr("reached"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_THAT(complaintsIn(program.error()),
                ElementsAre("kestrix-cli: the mail was cancelled: nothing was sent"));
}

TEST_F(ExportMail, TheTimeLimitCancelsIt) {
    MailServerProgram server({"--at", "greeting"});
    const Result result = exported(to(uri(server), {"--seconds", "1"}));
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error),
                ElementsAre("kestrix-cli: the mail was cancelled: nothing was sent"));
}

TEST_F(ExportMail, WhileItWaitsForThePasswordASignalCancelsItToo) {
    MailServerProgram server;
    Program program(words(to(uri(server, "ann"), {"--password-stdin"})));
    ASSERT_TRUE(program.waitUntilItRests());
    program.signal(SIGINT);
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_FALSE(server.hasMore());
}

TEST_F(ExportMail, ADraftNeverGoesThroughALink) {
    // A name for each of the seconds in which it may be written.
    writeFile(path_ + "/precious", "precious");
    const auto now = std::chrono::system_clock::now();
    for (int second = 0; second < 20; ++second) {
        const std::string stamp =
            platform::DateText(platform::kStampPattern).text(now + std::chrono::seconds(second));
        std::filesystem::create_symlink(path_ + "/precious", path_ + "/" + stamp + ".eml");
    }
    const Result result = exported({"--mail", "office@example.org", "--from", "ann@example.org", "--draft"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error), ElementsAre(StartsWith("kestrix-cli: the mail was not saved: ")));
    EXPECT_EQ(contentOf(path_ + "/precious"), "precious");
}

TEST_F(ExportMail, ADraftIsSavedAndNothingSent) {
    const Result result = exported({"--mail", "office@example.org", "--from", "ann@example.org", "--draft"});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(complaintsIn(result.error),
                ElementsAre(MatchesRegex("kestrix-cli: the mail was saved as .*/[0-9]{14}\\.eml")));
    const std::string line = complaintsIn(result.error).at(0);
    const std::string draft = contentOf(line.substr(line.find('/')));
    EXPECT_THAT(draft, HasSubstr("office@example.org"));
    EXPECT_THAT(draft, HasSubstr("Subject: House 7\r\n"));
}

TEST_F(ExportMail, TakesServerAndSenderFromTheSettingsOfTheFolder) {
    MailServerProgram server;
    writeFile(path_ + "/kestrix.ini", "[Kestrix]\nmailHost=127.0.0.1\nmailPort=" +
                                          std::to_string(server.port()) + "\nmailFrom=ann@example.org\n");
    const Result result = exported({"--mail", "office@example.org"}, {.ownSettings = false});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(mailOf(server)["from"], "ann@example.org");
}

}  // namespace
}  // namespace kestrix::cli
