#include "simulator/ByteFaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

Bytes damaged(const Damage& fault) {
    Bytes bytes = {1, 2, 3};
    damage(bytes, fault);
    return bytes;
}

TEST(Damage, FlipsDropsAndInserts) {
    EXPECT_EQ(damaged({DamageKind::Flip, 1, 0xF0}), (Bytes{1, 0xF2, 3}));
    EXPECT_EQ(damaged({DamageKind::Drop, 0, 0}), (Bytes{2, 3}));
    EXPECT_EQ(damaged({DamageKind::Insert, 1, 9}), (Bytes{1, 9, 2, 3}));
}

TEST(Damage, BehindTheEnd) {
    EXPECT_EQ(damaged({DamageKind::Flip, 3, 0xFF}), (Bytes{1, 2, 3}));
    EXPECT_EQ(damaged({DamageKind::Drop, 3, 0}), (Bytes{1, 2, 3}));
    EXPECT_EQ(damaged({DamageKind::Insert, 7, 9}), (Bytes{1, 2, 3, 9}));
}

Bytes through(const LineNoise& line, const Bytes& bytes) {
    Random random{11};
    Bytes out = {0xAB};
    sendThrough(line, bytes, random, out);
    EXPECT_EQ(out.at(0), 0xAB) << "what was there stays";
    out.erase(out.begin());
    return out;
}

const Bytes kZeros(10000, 0);

TEST(LineNoise, CleanPassesEverything) {
    EXPECT_EQ(through({}, {1, 2, 3}), (Bytes{1, 2, 3}));
}

TEST(LineNoise, CertainFlipTurnsOneBitOfEachByte) {
    for (const std::uint8_t byte : through({.flip = 1}, kZeros)) ASSERT_EQ(std::bitset<8>(byte).count(), 1U);
}

TEST(LineNoise, CertainDropLosesAll) {
    EXPECT_TRUE(through({.drop = 1}, kZeros).empty());
}

TEST(LineNoise, CertainInsertPutsAByteBeforeEach) {
    const Bytes out = through({.insert = 1}, Bytes(100, 0x55));
    ASSERT_EQ(out.size(), 200U);
    for (std::size_t i = 1; i < out.size(); i += 2) EXPECT_EQ(out[i], 0x55);
}

TEST(LineNoise, ProbabilitiesAreMet) {
    const auto flipped = through({.flip = 0.1}, kZeros);
    EXPECT_NEAR(static_cast<double>(std::count(flipped.begin(), flipped.end(), 0)), 9000, 200);
    EXPECT_NEAR(static_cast<double>(through({.drop = 0.1}, kZeros).size()), 9000, 200);
    EXPECT_NEAR(static_cast<double>(through({.insert = 0.1}, kZeros).size()), 11000, 200);
}

}  // namespace
}  // namespace kestrix::simulator
