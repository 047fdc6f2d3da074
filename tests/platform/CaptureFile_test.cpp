#include "platform/CaptureFile.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrix::platform {
namespace {

TEST(CaptureFile, TheHeaderIsOneReadableLine) {
    EXPECT_EQ(captureHeaderLine({"tcp://localhost:4000", "2026-11-21T05:00:00Z"}),
              "# kestrix-capture 1 source=tcp://localhost:4000 start=2026-11-21T05:00:00Z\n");
}

TEST(CaptureFile, WhatIsWrittenIsReadBack) {
    for (const std::string source : {"tcp://[::1]:4000", "replay:/a b/50% done.kxc", "serial:/dev/Gerät",
                                     "replay:line\nbreak start=x", "", "%", "replay:%41"}) {
        const std::string line = captureHeaderLine({source, "2026-11-21T05:00:00Z"});
        EXPECT_EQ(line.find('\n'), line.size() - 1) << source;
        const CaptureStart start = readCaptureStart(line + "\x7E\x0D\x1E");
        ASSERT_TRUE(start.header) << source;
        EXPECT_EQ(start.header->source, source);
        EXPECT_EQ(start.header->startTime, "2026-11-21T05:00:00Z");
        EXPECT_EQ(start.headerLength, line.size());
    }
}

TEST(CaptureFile, TheHeaderIsPlainAsciiWhateverTheSource) {
    std::string source;
    for (int byte = 1; byte < 256; ++byte) source += static_cast<char>(byte);
    for (const char c : captureHeaderLine({source, "x"})) {
        EXPECT_TRUE(c == '\n' || (c >= ' ' && c <= '~'));
    }
}

TEST(CaptureFile, AFileWithoutAHeaderIsAllBytes) {
    for (const std::string& text :
         {std::string(), std::string("\x7E\x0D\x1E"), std::string("# kestrix-capture 2 source=a start=b\n"),
          std::string("# kestrix-capture 1 source=a start=b"),
          std::string("# kestrix-capture 1 source=a\n")}) {
        const CaptureStart start = readCaptureStart(text);
        EXPECT_FALSE(start.header) << text;
        EXPECT_EQ(start.headerLength, 0U);
    }
}

TEST(CaptureFile, AHeaderIsNeverLongerThanItsBound) {
    const std::string line = captureHeaderLine({std::string(100'000, 'x'), "2026-11-21T05:00:00Z"});
    EXPECT_LE(line.size(), kCaptureHeaderMax);
    EXPECT_TRUE(readCaptureStart(line).header);
    const std::string longTime = captureHeaderLine({"tcp://a:1", std::string(5000, '1')});
    EXPECT_LE(longTime.size(), kCaptureHeaderMax);
    EXPECT_EQ(readCaptureStart(longTime).header->source, "tcp://a:1");
}

}  // namespace
}  // namespace kestrix::platform
