// Any bytes in any pieces through the session and the pipeline: the records are those of the literal
// algorithm over the whole. The first half of the input is the sizes of the pieces, the second the bytes.
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "link/BluetoothConnect.h"
#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"
#include "tests/support/FakeChannel.h"
#include "tests/support/LiteralExtraction.h"

namespace {

using namespace kestrix;
using Records = std::vector<protocol::MeterReading>;

class Keeper final : public link::BusinessCommunicationDelegate {
  public:
    void didReceive3820Data(const protocol::MeterReading& record, bool) override {
        records.push_back(record);
    }
    Records records;
};

void require(bool holds) {
    if (!holds) std::abort();
}

struct Pieces {
    std::span<const std::uint8_t> sizes;
    std::span<const std::uint8_t> stream;
};

Records receive(const Pieces& input) {
    testing::FakeLine line;
    testing::FakeOpener opener;
    opener.lines.push_back(&line);
    platform::AccessoryManager manager;
    platform::UserDefaults defaults(QStringLiteral("/nonexistent/kestrix.ini"));
    link::BluetoothConnect connect(manager, defaults);
    Keeper keeper;
    connect.setDelegate(&keeper);
    const auto subscription = platform::NotificationCenter::defaultCenter().addObserver(
        link::EADSessionDataReceivedNotification,
        [&](const platform::Notification& event) { connect.deviceDataReceived(event); });

    link::EADSessionController controller;
    controller.setupControllerForAccessory(
        std::make_shared<platform::Accessory>(platform::Accessory{1, "Tester", {"p"}, nullptr, &opener}),
        "p");
    require(controller.openSession());
    std::span<const std::uint8_t> rest = input.stream;
    for (std::size_t i = 0; !rest.empty(); ++i) {
        const std::size_t wanted = input.sizes.empty() ? rest.size() : input.sizes[i % input.sizes.size()];
        const std::size_t length = std::min(rest.size(), wanted + 1);
        line.receive(rest.first(length));
        rest = rest.subspan(length);
        require(connect.receiveDataString().size() <=
                link::FrameExtractor::kLeadingMax + link::FrameExtractor::kFrameCharacters);
    }
    return keeper.records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    const Pieces fragmented{input.first(size / 2), input.subspan(size / 2)};
    const Pieces whole{{}, fragmented.stream};

    std::string text;
    protocol::appendHexText(text, fragmented.stream);
    testing::LiteralExtraction literal;
    Records expected;
    for (const std::string& frame : literal.receive(text))
        expected.push_back(protocol::KV3820protocal().initFromString(frame).return3820data());

    require(receive(whole) == expected);
    require(receive(fragmented) == expected);
    return 0;
}
