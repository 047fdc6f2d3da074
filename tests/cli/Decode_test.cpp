// `kestrix-cli decode`, as a whole program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/CaptureFile.h"
#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"

namespace kestrix::cli {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

class Decode : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.path().toStdString() + "/" + name; }
    std::string fileWith(const std::string& bytes) const {
        writeFile(path("input.bin"), bytes);
        return path("input.bin");
    }

    QTemporaryDir folder_;
};

// The digits of the main reading in each line.
std::vector<double> readingsIn(const std::string& output) {
    std::vector<double> readings;
    for (const std::string& line : linesOf(output)) {
        const json record = json::parse(line, nullptr, false);
        EXPECT_TRUE(record.is_object()) << line;
        if (record.is_object()) readings.push_back(record.at("ValData1").at("ValD1"));
    }
    return readings;
}

TEST_F(Decode, AFileGivesOneObjectALine) {
    const Result result = run({"decode", fileWith(manyFrames(1000))});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    const std::vector<std::string> lines = linesOf(result.output);
    ASSERT_THAT(lines, SizeIs(1000));
    EXPECT_EQ(result.output.back(), '\n');
    for (const std::string& line : lines) {
        const json record = json::parse(line, nullptr, false);
        ASSERT_TRUE(record.is_object()) << line;
        ASSERT_EQ(record.size(), 56U) << line;
        ASSERT_EQ(record.at("strfunction"), "INSULATION");
    }
    EXPECT_EQ(json::parse(lines[999]).at("strValue1"), json::parse(lines[999]).at("ValData1").at("strValD1"));
}

TEST_F(Decode, StandardInputIsADashOrNothing) {
    const std::string bytes = manyFrames(3);
    const Result file = run({"decode", fileWith(bytes)});
    ASSERT_THAT(linesOf(file.output), SizeIs(3));
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"decode"}, std::vector<std::string>{"decode", "-"}}) {
        const Result input = run(arguments, bytes);
        EXPECT_EQ(input.status, 0);
        EXPECT_EQ(input.output, file.output);
        EXPECT_EQ(input.error, "");
    }
}

TEST_F(Decode, ACapturesHeaderIsNoPartOfIt) {
    const std::string header = platform::captureHeaderLine({"serial:/dev/x y", "2024-05-06T07:08:09Z"});
    const Result with = run({"decode", fileWith(header + manyFrames(2))});
    const Result without = run({"decode"}, manyFrames(2));
    EXPECT_EQ(with.status, 0);
    EXPECT_THAT(linesOf(with.output), SizeIs(2));
    EXPECT_EQ(with.output, without.output);
    EXPECT_EQ(with.error, "");
}

TEST_F(Decode, GarbageBetweenFramesAndHalfAFrameAtTheEnd) {
    const std::string garbage("\x00\xFF~\r\n{\"x\"}\x7E\x0D garbage", 20);
    const std::string half = insulationFrame(9).substr(0, 20);
    const Result result = run({"decode"}, garbage + insulationFrame(11) + garbage + insulationFrame(22) +
                                              insulationFrame(33) + garbage + half);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    const std::vector<double> readings = readingsIn(result.output);
    ASSERT_THAT(readings, SizeIs(3));
    EXPECT_DOUBLE_EQ(readings[1], 2 * readings[0]);
    EXPECT_DOUBLE_EQ(readings[2], 3 * readings[0]);
}

TEST_F(Decode, NothingAtAllIsNoMistake) {
    const Result input = run({"decode"});
    EXPECT_EQ(input.status, 0);
    EXPECT_EQ(input.output + input.error, "");
    const Result file = run({"decode", fileWith("")});
    EXPECT_EQ(file.status, 0);
    EXPECT_EQ(file.output + file.error, "");
}

TEST_F(Decode, SaysWhenThereIsNoFrame) {
    const Result result = run({"decode"}, std::string(500, 'x') + insulationFrame(1).substr(0, 35));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "kestrix-cli: -: no frame in 535 bytes\n");
}

TEST_F(Decode, WhatCannotBeReadFailsWithOneLine) {
    writeFile(path("secret.bin"), manyFrames(1));
    ASSERT_EQ(chmod(path("secret.bin").c_str(), 0), 0);
    Surroundings setup;
    setup.unprivileged = true;
    for (const std::string& file : {path("missing.bin"), folder_.path().toStdString(), path("missing/x"),
                                    path("secret.bin"), std::string()}) {
        const Result result = run({"decode", file}, {}, setup);
        EXPECT_EQ(result.status, 1) << file;
        EXPECT_EQ(result.output, "") << file;
        EXPECT_THAT(linesOf(result.error), ElementsAre(StartsWith("kestrix-cli: " + file + ": ")));
    }
}

TEST_F(Decode, ARecordComesBeforeTheInputEnds) {
    Program program({"decode"});
    ASSERT_TRUE(program.send(insulationFrame(1)));
    ASSERT_TRUE(program.waitForOutput("\n"));
    ASSERT_TRUE(program.send(insulationFrame(2) + insulationFrame(3).substr(0, 1)));
    ASSERT_TRUE(program.waitUntil([&] { return linesOf(program.output()).size() == 2; }));
    ASSERT_TRUE(program.send(insulationFrame(3).substr(1)));
    ASSERT_TRUE(program.waitUntil([&] { return linesOf(program.output()).size() == 3; }));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(readingsIn(program.output()), SizeIs(3));
    EXPECT_EQ(program.error(), "");
}

TEST_F(Decode, PiecesOfAnySizeGiveTheSame) {
    const std::string header = platform::captureHeaderLine({"tcp://a:1", "2024-05-06T07:08:09Z"});
    const std::string bytes = header + std::string(11, '\x7E') + manyFrames(300) + "\x7E\x0D";
    const Result whole = run({"decode", fileWith(bytes)});
    ASSERT_THAT(linesOf(whole.output), SizeIs(300));

    constexpr std::array<std::size_t, 7> sizes{1, 7, 35, 36, 37, 2, 101};
    Program program({"decode"});
    std::size_t place = 0;
    for (std::size_t i = 0; place < bytes.size(); ++i) {
        ASSERT_TRUE(program.send(bytes.substr(place, sizes[i % sizes.size()])));
        place += sizes[i % sizes.size()];
    }
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.output(), whole.output);
    EXPECT_EQ(program.error(), "");
}

TEST_F(Decode, AReaderThatGoesAwayEndsItQuietly) {
    Program program({"decode", fileWith(manyFrames(20'000))});
    ASSERT_TRUE(program.waitForOutput("\n"));
    program.closeOutput();
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.error(), "");
}

TEST_F(Decode, AFullDiskFailsWithOneLine) {
    const std::string file = fileWith(manyFrames(2));
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"decode", file}, {"decode", "--frame", "7e0d1e"}}) {
        Surroundings setup;
        setup.output = "/dev/full";
        const Result result = run(arguments, {}, setup);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(linesOf(result.error),
                    ElementsAre(::testing::AllOf(StartsWith("kestrix-cli: "), HasSubstr("No space left"))));
    }
}

TEST_F(Decode, WaitsForAnInputThatWouldNotBlock) {
    Surroundings setup;
    setup.waitingInput = false;
    Program program({"decode"}, setup);
    // Each time it reads again, and finds nothing there, before or while the next frame is sent.
    for (std::size_t i = 1; i <= 200; ++i) {
        ASSERT_TRUE(program.send(insulationFrame(1))) << program.error();
        ASSERT_TRUE(program.waitUntil([&] { return linesOf(program.output()).size() == i; }))
            << program.error();
    }
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.error(), "");
}

TEST_F(Decode, KeepsItsHandsOffTheSettings) {
    std::filesystem::create_directories(path("config/kestrix"));
    const std::string settings = path("config/kestrix/kestrix-cli.ini");
    writeFile(settings, "[broken\nno equals sign");
    Surroundings setup;
    setup.environment = {"XDG_CONFIG_HOME=" + path("config")};
    const Result result = run({"decode"}, insulationFrame(1), setup);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(contentOf(settings), "[broken\nno equals sign");
}

// The most memory that decoding so many frames and so much garbage takes, in KiB.
long peakOfPlainDecoding(std::size_t rounds) {
    Surroundings setup;
    setup.output = "/dev/null";
    Program program({"decode"}, setup);
    const std::string frames = manyFrames(15'000);
    const std::string garbage(100'000, '\x7E');
    for (std::size_t i = 0; i < rounds; ++i) {
        EXPECT_TRUE(program.send(frames));
        EXPECT_TRUE(program.send(garbage));
    }
    // All is read but what the pipe holds, which is less than the rounds differ by.
    const long peak = program.peakKilobytes();
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.error(), "");
    return peak;
}

TEST_F(Decode, NeedsNoMoreMemoryForMore) {
    const long small = peakOfPlainDecoding(3);   // 2 MB
    const long large = peakOfPlainDecoding(95);  // 61 MB
    EXPECT_GT(small, 1000);
    EXPECT_LT(large - small, 4096);
}

std::string frameText() {
    return testing::FrameBuilder('2').reading(1, 1234, 0x00).hexText();
}

TEST_F(Decode, OneFrameText) {
    const Result text = run({"decode", "--frame", frameText()});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.error, "");
    EXPECT_EQ(text.output, run({"decode"}, insulationFrame(1234)).output);
    EXPECT_EQ(json::parse(text.output).at("strfunction"), "INSULATION");
}

TEST_F(Decode, AnOddFrameTextLosesItsLastCharacter) {
    EXPECT_EQ(run({"decode", "--frame", frameText() + "7"}).output,
              run({"decode", "--frame", frameText()}).output);
}

// The tester's own rule: a low letter is read in the case of the character before it, which is a low one when
// that is a digit.
TEST_F(Decode, AnUpperCaseFrameTextIsReadAsTheTesterReadsIt) {
    // 0x4D2 as "d204": in capitals "D2" is the same byte, and "1A" in the place of "1a" is not.
    std::string text = frameText();
    const auto digits = text.find("d204");
    ASSERT_NE(digits, std::string::npos);
    text[digits] = 'D';
    EXPECT_EQ(run({"decode", "--frame", text}).output, run({"decode", "--frame", frameText()}).output);

    const std::string lower = testing::FrameBuilder('2').reading(1, 0x001A, 0x00).hexText();
    std::string upper = lower;
    const auto place = upper.find("1a00");
    ASSERT_NE(place, std::string::npos);
    upper[place + 1] = 'A';
    const json asCapital = json::parse(run({"decode", "--frame", upper}).output);
    const json asSmall = json::parse(run({"decode", "--frame", lower}).output);
    EXPECT_NE(asCapital.at("ValData1").at("ValD1"), asSmall.at("ValData1").at("ValD1"));
    EXPECT_EQ(asCapital.at("strfunction"), "INSULATION");
}

TEST_F(Decode, AFrameTextThatIsTooShortHoldsNothing) {
    for (const std::string& text : {std::string("7e0d1e"), frameText().substr(0, 60), std::string()}) {
        const Result result = run({"decode", "--frame", text});
        EXPECT_EQ(result.status, 0);
        const json record = json::parse(result.output);
        EXPECT_EQ(record.at("iFunction"), 0);
        EXPECT_EQ(record.at("strfunction"), "");
        EXPECT_EQ(record.at("ValData1").at("ValD1"), 0);
    }
}

TEST_F(Decode, AFrameTextAndAFileExcludeEachOther) {
    const Result result = run({"decode", "--frame", frameText(), fileWith(manyFrames(1))});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(linesOf(result.error), ElementsAre(StartsWith("kestrix-cli: ")));
}

}  // namespace
}  // namespace kestrix::cli
