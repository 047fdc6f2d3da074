#include "platform/MailMessage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrix::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

MailMessage message() {
    MailMessage mail;
    mail.from = "me@example.org";
    mail.recipient = "you@example.org";
    mail.subject = "Plant A";
    mail.htmlBody = "<H5>Kestrix Safety Tester</H5>";
    return mail;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find("\r\n", at);
        EXPECT_NE(end, std::string::npos) << "the last line does not end";
        if (end == std::string::npos) break;
        lines.push_back(text.substr(at, end - at));
        at = end + 2;
    }
    return lines;
}

// The names of the headers, in order.
std::vector<std::string> headerNames(const std::string& text) {
    std::vector<std::string> names;
    for (const std::string& line : linesOf(text)) {
        if (line.empty()) break;
        if (line.front() != ' ' && line.front() != '\t') names.push_back(line.substr(0, line.find(':')));
    }
    return names;
}

void expectSoundLines(const std::string& text) {
    for (const std::string& line : linesOf(text)) {
        EXPECT_LE(line.size(), 998U);
        EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos);
        for (const char c : line) EXPECT_TRUE(c == '\t' || (c >= ' ' && c <= '~')) << static_cast<int>(c);
    }
}

const auto kOnlyOurs =
    ElementsAre("From", "To", "Subject", "Date", "Message-ID", "MIME-Version", "Content-Type");

TEST(MailText, HasTheHeadersOfAMailAndNoOther) {
    MailMessage mail = message();
    EXPECT_THAT(headerNames(mailText(mail)),
                ElementsAre("From", "To", "Subject", "Date", "Message-ID", "MIME-Version", "Content-Type",
                            "Content-Transfer-Encoding"));
    mail.attachment = MailAttachment{"report.pdf", "application/pdf", "%PDF"};
    EXPECT_THAT(headerNames(mailText(mail)), kOnlyOurs);
}

TEST(MailText, NoFieldBringsAHeaderIn) {
    for (const std::string end : {"\r\n", "\n", "\r", "\v", "\f", "\xc2\x85", "\xe2\x80\xa8", "\r\n\r\n"}) {
        MailMessage mail = message();
        mail.attachment =
            MailAttachment{"a" + end + "Bcc: all@example.org", "text/csv" + end + "Bcc: x", "1"};
        mail.subject = "Plant" + end + "Bcc: all@example.org";
        mail.from = "me@example.org" + end + "Bcc: all@example.org";
        mail.recipient = "you@example.org" + end + "Bcc: all@example.org";
        const std::string text = mailText(mail);
        EXPECT_THAT(headerNames(text), kOnlyOurs);
        EXPECT_THAT(text, Not(HasSubstr("\nBcc")));
        expectSoundLines(text);
    }
}

TEST(MailText, AZeroByteCutsNothing) {
    MailMessage mail = message();
    mail.subject = std::string("a\0b", 3);
    mail.htmlBody = std::string("x\0y", 3);
    const std::string text = mailText(mail);
    EXPECT_THAT(text, HasSubstr("Subject: a b\r\n"));
    EXPECT_THAT(text, HasSubstr("x=00y"));
}

TEST(MailText, AnySubjectIsItsOwnEncodedOrAsItIs) {
    MailMessage mail = message();
    const auto subjectLine = [&](const std::string& subject) {
        mail.subject = subject;
        for (const std::string& line : linesOf(mailText(mail))) {
            if (line.starts_with("Subject: ")) return line;
        }
        return std::string();
    };
    EXPECT_EQ(subjectLine("Plant A, 3rd floor: 100 %"), "Subject: Plant A, 3rd floor: 100 %");
    EXPECT_EQ(subjectLine("Prüfung"), "Subject: =?UTF-8?B?UHLDvGZ1bmc=?=");
    EXPECT_EQ(subjectLine("=?x?="), "Subject: =?UTF-8?B?PT94Pz0=?=");  // else its reader would decode it
    EXPECT_EQ(subjectLine(" "), "Subject: =?UTF-8?B?IA==?=");
    EXPECT_EQ(subjectLine(""), "Subject: ");
    EXPECT_EQ(subjectLine("\xff"), "Subject: =?UTF-8?B?77+9?=");
}

TEST(MailText, LongTextsKeepTheLinesShort) {
    MailMessage mail = message();
    for (const std::string& piece :
         {std::string("a"), std::string(" "), std::string("\U0001F600"), std::string("ü x")}) {
        std::string longText;
        while (longText.size() < 100'000) longText += piece;
        mail.subject = longText;
        mail.htmlBody = longText;
        mail.attachment = MailAttachment{longText, "csv", longText};
        expectSoundLines(mailText(mail));
    }
}

TEST(MailText, ACharacterIsNotCutInTwo) {
    MailMessage mail = message();
    for (int offset = 0; offset < 4; ++offset) {
        mail.subject = std::string(static_cast<std::size_t>(offset), 'x');
        for (int i = 0; i < 60; ++i) mail.subject += "\U0001F600";
        for (const std::string& line : linesOf(mailText(mail))) {
            const std::size_t begin = line.find("=?UTF-8?B?");
            if (begin == std::string::npos) continue;
            const auto word = QByteArray::fromBase64(
                QByteArray::fromStdString(line.substr(begin + 10, line.size() - begin - 12)));
            EXPECT_EQ(QString::fromUtf8(word).toUtf8(), word) << line;
        }
    }
}

// A draft keeps what the user has typed so far, but no program takes it for an address.
TEST(MailText, WhatIsNoAddressIsKeptAsAText) {
    MailMessage mail = message();
    mail.from.clear();
    mail.recipient = "-";
    const std::string text = mailText(mail);
    EXPECT_THAT(text, HasSubstr("To: =?UTF-8?B?LQ==?=\r\n"));
    EXPECT_THAT(headerNames(text), Not(::testing::Contains("From")));
    EXPECT_THAT(text, HasSubstr("@kestrix.invalid>"));
}

TEST(MailText, AMediaTypeWithoutASlashIsAKindOfText) {
    MailMessage mail = message();
    const auto typeOf = [&](const std::string& type) {
        mail.attachment = MailAttachment{"x", type, "1"};
        const std::string text = mailText(mail);
        const std::size_t last = text.rfind("Content-Type: ");
        return text.substr(last + 14, text.find(';', last) - last - 14);
    };
    EXPECT_EQ(typeOf("csv"), "text/csv");
    EXPECT_EQ(typeOf("application/pdf"), "application/pdf");
    for (const char* none : {"", "/", "a/", "/b", "a b", "a/b/c", "text/csv; x=y", "ü"})
        EXPECT_EQ(typeOf(none), "application/octet-stream") << none;
}

TEST(MailText, TheDateIsWrittenInUniversalTime) {
    MailMessage mail = message();
    mail.date = std::chrono::system_clock::time_point(std::chrono::seconds(1425305133));
    EXPECT_THAT(mailText(mail), HasSubstr("Date: Mon, 02 Mar 2015 14:05:33 +0000\r\n"));
}

TEST(MailText, TwoOfOneMessageHaveTwoIdentities) {
    const auto identity = [](const std::string& text) {
        const std::size_t at = text.find("Message-ID: <");
        return text.substr(at, text.find('>', at) - at);
    };
    EXPECT_NE(identity(mailText(message())), identity(mailText(message())));
}

}  // namespace
}  // namespace kestrix::platform
