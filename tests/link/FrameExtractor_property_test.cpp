// Random streams: the extraction must equal its plain definition, whatever the pieces.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "link/FrameExtractor.h"
#include "protocol/HexText.h"
#include "tests/support/LiteralExtraction.h"

namespace kestrix::link {
namespace {

using Frames = std::vector<std::string>;
using Random = std::mt19937;

std::size_t below(Random& random, std::size_t limit) {
    return random() % limit;
}

// Frames, broken frames, markers and garbage, as bytes and as single characters that shift all that follows.
std::string randomStream(Random& random) {
    std::string text;
    const std::size_t pieces = 1 + below(random, 12);
    for (std::size_t i = 0; i < pieces; ++i) {
        std::string frame = "7e0d1e";
        while (frame.size() < 72) frame += "0123456789abcdef"[below(random, 16)];
        switch (below(random, 8)) {
            case 0:
                text += frame.substr(0, below(random, 72));
                break;
            case 1:
                text += frame.substr(below(random, 72));
                break;
            case 2:
                text += std::string(below(random, 9), "07ed1"[below(random, 5)]);
                break;
            case 3:
                text += "7e0d7e0d1";
                break;
            case 4:
                frame.erase(6 + below(random, 60), 1 + below(random, 6));
                text += frame;
                break;
            default:
                text += frame;
                break;
        }
        if (below(random, 40) == 0) text += std::string(3000 + below(random, 3000), '5');
    }
    return text;
}

Frames extractInPieces(const std::string& text, Random& random, std::size_t longestPiece) {
    FrameExtractor extractor;
    Frames frames;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = 1 + below(random, longestPiece);
        extractor.append(std::string_view(text).substr(at, length));
        while (const auto frame = extractor.nextFrame()) frames.emplace_back(*frame);
        at += length;
    }
    return frames;
}

TEST(FrameExtractorProperty, AnyFragmentationGivesTheFramesOfTheLiteralAlgorithm) {
    Random random(1);  // NOLINT(cert-msc51-cpp): the same streams in every run
    std::size_t total = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string text = randomStream(random);
        testing::LiteralExtraction literal;
        const Frames expected = literal.receive(text);
        total += expected.size();
        for (const std::size_t longest :
             {std::size_t{1}, std::size_t{13}, std::size_t{200}, text.size() + 1}) {
            ASSERT_EQ(extractInPieces(text, random, longest), expected)
                << "pieces up to " << longest << " of " << text;
        }
    }
    EXPECT_GT(total, 3000U);  // the streams do hold frames
}

TEST(FrameExtractorProperty, TheLiteralAlgorithmInPiecesGivesTheSameFramesToo) {
    Random random(2);  // NOLINT(cert-msc51-cpp)
    for (int round = 0; round < 500; ++round) {
        const std::string text = randomStream(random);
        testing::LiteralExtraction whole;
        testing::LiteralExtraction pieces;
        Frames frames;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = 1 + below(random, 90);
            for (const std::string& frame : pieces.receive(text.substr(at, length))) frames.push_back(frame);
            at += length;
        }
        ASSERT_EQ(frames, whole.receive(text)) << text;
    }
}

// Garbage that holds no beginning of a marker costs no frame at all.
TEST(FrameExtractorProperty, PlainGarbageBetweenFramesCostsNothing) {
    Random random(3);  // NOLINT(cert-msc51-cpp)
    for (int round = 0; round < 300; ++round) {
        std::string text;
        Frames sent;
        for (int i = 0; i < 5; ++i) {
            text += std::string(below(random, 9000), '5');
            sent.push_back("7e0d1e" + std::string(66, static_cast<char>('0' + i)));
            text += sent.back();
        }
        ASSERT_EQ(extractInPieces(text, random, 300), sent);
    }
}

// A frame cut short swallows the beginning of the next one, and no more than that.
TEST(FrameExtractorProperty, AFrameCutShortCostsItselfAndTheNextOnly) {
    const std::string whole = "7e0d1e" + std::string(66, 'a');
    for (std::size_t length = 6; length < 72; ++length) {
        testing::LiteralExtraction literal;
        FrameExtractor extractor;
        std::string text = whole.substr(0, length);
        for (int i = 0; i < 3; ++i) text += whole;
        const Frames expected = literal.receive(text);
        Random random(4);  // NOLINT(cert-msc51-cpp)
        EXPECT_EQ(extractInPieces(text, random, 50), expected);
        ASSERT_GE(expected.size(), 2U);
        EXPECT_EQ(expected.back(), whole) << length;
    }
}

}  // namespace
}  // namespace kestrix::link
