#include "shell/ProductContent.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "artwork/Pictures.h"

namespace kestrix::shell {
namespace {

QByteArray carried() {
    QFile file(QStringLiteral(KESTRIX_SOURCE_DIR "/product/content.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// What is wrong once this part of the content is another one.
std::string problemWith(const char* part, const char* other) {
    QByteArray content = carried();
    EXPECT_TRUE(content.contains(part)) << part;
    const ProductContent read =
        readProductContent(content.replace(content.indexOf(part), qstrlen(part), other));
    EXPECT_TRUE(read.problem.isEmpty() || (read.webAddress.isEmpty() && read.applications.empty()));
    return read.problem.toStdString();
}

TEST(ProductContent, ThatTheProgramCarriesIsRightAndItsIconsAreThere) {
    const ProductContent content = productContent();
    EXPECT_EQ(content.problem.toStdString(), "");
    EXPECT_FALSE(content.webAddress.isEmpty());
    ASSERT_EQ(content.applications.size(), 3U);
    artwork::load();
    for (const ProductContent::Application& application : content.applications)
        EXPECT_EQ(artwork::picture(application.imgUrl, 1).size(), QSize(45, 45))
            << application.imgUrl.toStdString();
}

TEST(ProductContent, IsReadInTheOrderOfTheFile) {
    const ProductContent content = readProductContent(
        R"({"applications": [
              {"ImgUrl": "c.png", "Title": "C", "Content": "Does c.", "address": "https://c.example"},
              {"ImgUrl": "a.png", "Title": "A", "Content": "Does a.", "address": "http://a.example/x?y=1"},
              {"ImgUrl": "b.png", "Title": "Bö", "Content": "Does b.", "address": "https://b.example/"}],
            "webAddress": " https://m.example "})");
    EXPECT_EQ(content.problem.toStdString(), "");
    EXPECT_EQ(content.webAddress, QStringLiteral("https://m.example"));
    ASSERT_EQ(content.applications.size(), 3U);
    EXPECT_EQ(content.applications[0].imgUrl, QStringLiteral("c.png"));
    EXPECT_EQ(content.applications[1].address, QStringLiteral("http://a.example/x?y=1"));
    EXPECT_EQ(content.applications[2].title, QStringLiteral("Bö"));
    EXPECT_EQ(content.applications[2].content, QStringLiteral("Does b."));
}

TEST(ProductContent, ABadOneIsSaidInOneLine) {
    const struct {
        const char* part;
        const char* other;
        const char* problem;
    } bad[] = {
        {"{", "", "line 2: illegal value"},
        {"\"Second application\",", "\"Second application\"", "line 13: unterminated object"},
        {"webAddress", "webadress", "\"webAddress\" is missing"},
        {"https://www.example.com", "www.example.com", "\"webAddress\" is no web address: www.example.com"},
        {"https://www.example.com", "file:///etc/passwd",
         "\"webAddress\" is no web address: file:///etc/passwd"},
        {"https://store.example.com/second", "https://",
         "application 2: \"address\" is no web address: https://"},
        {"\"First application\"", "\" \"", "application 1: \"Title\" is no text of one line"},
        {"\"First application\"", "1", "application 1: \"Title\" is no text of one line"},
        {"\"First application\"", "\"two\\nlines\"", "application 1: \"Title\" is no text of one line"},
        {"\"ImgUrl\"", "\"icon\"", "application 1: \"ImgUrl\" is missing"},
        {"\"Title\"", "\"more\": 1, \"Title\"", "application 1: there is no \"more\""},
        {"\"webAddress\"", "\"version\": \"2\", \"webAddress\"", "there is no \"version\""},
        {"\"applications\": [", "\"applications\": [{},", "\"applications\" lists 4, not 3"},
        {"\"applications\": [", "\"apps\": [", "\"applications\" lists 0, not 3"},
    };
    for (const auto& [part, other, problem] : bad)
        EXPECT_EQ(problemWith(part, other), problem) << part << " as " << other;
}

TEST(ProductContent, WhatIsNoObjectIsSaid) {
    EXPECT_EQ(readProductContent("[]").problem.toStdString(), "\"webAddress\" is missing");
    EXPECT_EQ(readProductContent("").problem.toStdString(), "line 1: illegal value");
}

}  // namespace
}  // namespace kestrix::shell
