#include "storage/EvidenceHash.h"

#include <gtest/gtest.h>

#include <functional>
#include <regex>
#include <set>

#include "storage/MeasurementIdentity.h"
#include "tests/storage/StorageFixture.h"
#include "tests/storage/WorkedExample.h"

namespace kestrix::storage {
namespace {

TEST(EvidenceHash, OfTheWorkedExampleIsAsTheDocumentTells) {
    const EvidenceRow row = exampleRow();
    EXPECT_EQ(row.evidence.frame.size(), 36U);
    EXPECT_EQ(hexOf(row.measurement), exampled("measurement"));
    EXPECT_EQ(canonicalForm(row).size(), 295U);
    EXPECT_EQ(hexOf(hashOf(row)), exampled("hash"));
}

TEST(EvidenceHash, IsAnotherOneForEveryFieldThatIsChanged) {
    const EvidenceRow row = exampleRow();
    const std::function<void(EvidenceRow&)> changes[] = {
        [](EvidenceRow& changed) { changed.place = 2; },
        [](EvidenceRow& changed) { changed.event = EvidenceEvent::PutBack; },
        [](EvidenceRow& changed) { changed.identity.back() = '0'; },
        [](EvidenceRow& changed) { changed.dataId = 2; },
        [](EvidenceRow& changed) { changed.measurement[31] ^= 1; },
        [](EvidenceRow& changed) { changed.evidence.frame[35] ^= 1; },
        [](EvidenceRow& changed) { changed.evidence.tripTimeFrames[5] = std::string(36, 'x'); },
        [](EvidenceRow& changed) { changed.evidence.tripTimeFrames[4] = std::string(36, 'x'); },
        [](EvidenceRow& changed) { changed.evidence.equalFrames = 4; },
        [](EvidenceRow& changed) { changed.evidence.source = "tcp"; },
        [](EvidenceRow& changed) { changed.evidence.accessory += ' '; },
        [](EvidenceRow& changed) { changed.evidence.origin = Origin::Simulated; },
        [](EvidenceRow& changed) { changed.evidence.origin = Origin::Replayed; },
        [](EvidenceRow& changed) { ++changed.moment.utc; },
        [](EvidenceRow& changed) { ++changed.moment.utcOffset; },
        [](EvidenceRow& changed) { ++changed.moment.sinceBoot; },
        [](EvidenceRow& changed) { changed.program = "kestrix 0.1.1"; },
        [](EvidenceRow& changed) { changed.previous[0] = 1; }};
    std::set<Sha256> hashes{hashOf(row)};
    for (const auto& change : changes) {
        EvidenceRow changed = row;
        change(changed);
        EXPECT_TRUE(hashes.insert(hashOf(changed)).second) << hashes.size();
    }
}

TEST(EvidenceHash, OfAMeasurementKnowsEveryColumnButItsIdentity) {
    const MeasureData measure = measurement(1);
    std::set<Sha256> digests{digestOf(measure)};
    MeasureData changed = measure;
    changed.dataId = 7;
    EXPECT_EQ(digestOf(changed), digestOf(measure));
    changed.recordId = 1;
    EXPECT_TRUE(digests.insert(digestOf(changed)).second);
    for (const auto text :
         {&MeasureData::dataName, &MeasureData::function, &MeasureData::parameters, &MeasureData::result,
          &MeasureData::dateTime, &MeasureData::comments, &MeasureData::recordName}) {
        changed = measure;
        (changed.*text) += 'x';
        EXPECT_TRUE(digests.insert(digestOf(changed)).second);
    }
    // A text that goes on in the next column is another measurement.
    changed = measure;
    changed.dataName = "S_1Low";
    changed.function = " Ohm";
    EXPECT_TRUE(digests.insert(digestOf(changed)).second);
}

TEST(EvidenceHash, TripTimesArePackedByTheirRows) {
    Evidence evidence;
    evidence.tripTimeFrames[1] = std::string(36, 'a');
    evidence.tripTimeFrames[5] = std::string(36, 'b');
    const std::string packed = packedTripTimes(evidence);
    EXPECT_EQ(packed, '\x02' + std::string(36, 'a') + '\x06' + std::string(36, 'b'));
    Evidence unpacked;
    EXPECT_TRUE(unpackTripTimes(packed, unpacked));
    EXPECT_EQ(unpacked, evidence);
    for (const std::string& wrong :
         {packed.substr(1), packed + '\x01', '\x07' + std::string(36, 'a'),
          std::string(1, '\0') + std::string(36, 'a'), packed + '\x06' + std::string(36, 'c')}) {
        EXPECT_FALSE(unpackTripTimes(wrong, unpacked));
        EXPECT_EQ(unpacked, evidence) << "left as it was";
    }
}

TEST(MeasurementIdentity, IsAUuidOfVersionSevenThatBeginsWithItsMoment) {
    const std::int64_t moment = 0x019CB6F39E93;
    const std::regex form("019cb6f3-9e93-7[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
    std::set<std::string> seen;
    std::set<char> variants;
    for (int i = 0; i < 1000; ++i) {
        const std::string identity = newMeasurementIdentity(moment);
        EXPECT_TRUE(std::regex_match(identity, form)) << identity;
        EXPECT_TRUE(seen.insert(identity).second);
        variants.insert(identity[19]);
    }
    EXPECT_EQ(variants, (std::set<char>{'8', '9', 'a', 'b'}));
}

}  // namespace
}  // namespace kestrix::storage
