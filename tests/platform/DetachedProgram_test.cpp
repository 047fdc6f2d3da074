#include "platform/DetachedProgram.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <filesystem>
#include <optional>

#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

QStringList script(const char* text) {
    return {QStringLiteral("-c"), QLatin1String(text)};
}

TEST(DetachedProgram, SaysWhatItWroteLastWhenItEnds) {
    for (const auto& [text, said] : {std::pair("echo one >&2; echo two >&2; exit 1", "two"),
                                     std::pair("printf 'half' >&2", "half"), std::pair("true", "")}) {
        std::optional<std::string> line;
        const DetachedProgram program(QStringLiteral("/bin/sh"), script(text),
                                      [&line](const std::string& last) { line = last; });
        EXPECT_TRUE(program.isStarted());
        ASSERT_TRUE(testing::spinUntil([&] { return line.has_value(); })) << text;
        EXPECT_EQ(*line, said);
    }
}

TEST(DetachedProgram, ThatIsNotThereIsNotStarted) {
    const DetachedProgram program(QStringLiteral("/nowhere/kestrix"), {},
                                  [](const std::string&) { FAIL() << "it never began"; });
    EXPECT_FALSE(program.isStarted());
}

TEST(DetachedProgram, GoesOnWhenNobodyListensAnyMore) {
    const QTemporaryDir folder;
    const std::string done = folder.filePath(QStringLiteral("done")).toStdString();
    {
        const DetachedProgram program(
            QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"),
             QStringLiteral("trap '' PIPE; until [ -e \"$1.go\" ]; do :; done; echo >&2; touch \"$1\""),
             QStringLiteral("sh"), QString::fromStdString(done)},
            [](const std::string&) {});
        ASSERT_TRUE(program.isStarted());
    }
    std::filesystem::create_directory(done + ".go");
    EXPECT_TRUE(testing::spinUntil([&] { return std::filesystem::exists(done); }));
}

TEST(DetachedProgram, MayBeDestroyedByWhoHearsOfItsEnd) {
    std::unique_ptr<DetachedProgram> program;
    program = std::make_unique<DetachedProgram>(QStringLiteral("/bin/sh"), script("true"),
                                                [&program](const std::string&) { program.reset(); });
    EXPECT_TRUE(testing::spinUntil([&] { return program == nullptr; }));
}

}  // namespace
}  // namespace kestrix::platform
