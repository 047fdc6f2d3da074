#include "link/FrameExtractor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrix::link {
namespace {

const std::string kMarkerText = "7e0d1e";

std::string frameOf(char filling) {
    return kMarkerText + std::string(66, filling);
}

std::vector<std::string> receive(FrameExtractor& extractor, const std::string& text) {
    std::vector<std::string> frames;
    extractor.append(text);
    while (const auto frame = extractor.nextFrame()) frames.emplace_back(*frame);
    return frames;
}

using Frames = std::vector<std::string>;

TEST(FrameExtractor, OneWholeFrameLeavesNothing) {
    FrameExtractor extractor;
    EXPECT_EQ(receive(extractor, frameOf('a')), Frames{frameOf('a')});
    EXPECT_EQ(extractor.kept(), "");
}

TEST(FrameExtractor, AFrameInTwoPiecesComesWithTheSecond) {
    FrameExtractor extractor;
    EXPECT_EQ(receive(extractor, frameOf('a').substr(0, 20)), Frames{});
    EXPECT_EQ(extractor.kept(), frameOf('a').substr(0, 20));
    EXPECT_EQ(receive(extractor, frameOf('a').substr(20)), Frames{frameOf('a')});
}

TEST(FrameExtractor, TwoFramesBackToBackComeInOrder) {
    FrameExtractor extractor;
    EXPECT_EQ(receive(extractor, frameOf('a') + frameOf('b')), (Frames{frameOf('a'), frameOf('b')}));
}

TEST(FrameExtractor, FewerThanSevenCharactersWait) {
    FrameExtractor extractor;
    EXPECT_EQ(receive(extractor, kMarkerText), Frames{});
    EXPECT_EQ(extractor.kept(), kMarkerText);
}

TEST(FrameExtractor, TheMarkerIsFoundAtAnOddCharacter) {
    FrameExtractor extractor;
    EXPECT_EQ(receive(extractor, "f" + frameOf('a')), Frames{frameOf('a')});
}

TEST(FrameExtractor, TheMarkerIsFoundAcrossPieces) {
    for (std::size_t cut = 1; cut < kMarkerText.size(); ++cut) {
        FrameExtractor extractor;
        EXPECT_EQ(receive(extractor, "aabb" + kMarkerText.substr(0, cut)), Frames{});
        EXPECT_EQ(receive(extractor, kMarkerText.substr(cut) + std::string(66, '0')), Frames{frameOf('0')})
            << cut;
        EXPECT_EQ(extractor.kept(), "");
    }
}

TEST(FrameExtractor, AMarkerWithTooFewCharactersKeepsEverything) {
    FrameExtractor extractor;
    const std::string text = "aabb" + kMarkerText + std::string(65, '0');
    EXPECT_EQ(receive(extractor, text), Frames{});
    EXPECT_EQ(extractor.kept(), text);
    EXPECT_EQ(receive(extractor, "0"), Frames{frameOf('0')});
}

TEST(FrameExtractor, AMarkerInsideAFrameIsPartOfIt) {
    FrameExtractor extractor;
    const std::string frame = kMarkerText + kMarkerText + std::string(60, '1');
    EXPECT_EQ(receive(extractor, frame), Frames{frame});
}

TEST(FrameExtractor, TextWithoutAMarkerIsKeptUpToTheBound) {
    FrameExtractor extractor;
    const std::string text(FrameExtractor::kLeadingMax, '7');
    EXPECT_EQ(receive(extractor, text), Frames{});
    EXPECT_EQ(extractor.kept(), text);
}

TEST(FrameExtractor, PastTheBoundOnlyTheBeginningOfAMarkerIsKept) {
    FrameExtractor extractor;
    EXPECT_EQ(receive(extractor, std::string(FrameExtractor::kLeadingMax - 4, '0') + "7e0d1"), Frames{});
    EXPECT_EQ(extractor.kept(), "7e0d1");
    EXPECT_EQ(receive(extractor, "e" + std::string(66, 'c')), Frames{frameOf('c')});
}

TEST(FrameExtractor, PastTheBoundWhatStandsBeforeAMarkerIsDropped) {
    FrameExtractor extractor;
    EXPECT_EQ(receive(extractor, std::string(FrameExtractor::kLeadingMax + 1, '0') + kMarkerText), Frames{});
    EXPECT_EQ(extractor.kept(), kMarkerText);
    EXPECT_EQ(receive(extractor, std::string(66, 'c')), Frames{frameOf('c')});
}

// Guards the linear cost: neither the kept text nor its store may grow with what came before.
TEST(FrameExtractor, TheKeptTextStaysBoundedInAnEndlessStreamOfSmallPieces) {
    FrameExtractor extractor;
    const std::string stream = frameOf('a') + "00112233" + frameOf('b') + "7e0d7e0d";
    std::size_t frames = 0;
    std::size_t most = 0;
    for (std::size_t round = 0; round < 5000; ++round) {
        for (std::size_t at = 0; at < stream.size(); at += 7) {
            frames += receive(extractor, stream.substr(at, 7)).size();
            most = std::max(most, extractor.kept().size());
        }
    }
    EXPECT_EQ(frames, 10'000U);
    EXPECT_LE(most, FrameExtractor::kFrameCharacters + 16);
}

}  // namespace
}  // namespace kestrix::link
