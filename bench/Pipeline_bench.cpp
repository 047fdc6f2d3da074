// Bytes -> hexadecimal text -> frames -> records with all their texts, per frame; beside it the same road on
// printf: snprintf for every byte and every text, plain string searching and cutting.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "bench/TesterStream.h"
#include "link/BluetoothConnect.h"
#include "platform/ByteChannel.h"
#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"
#include "tests/protocol/ExpectedRecord.h"

namespace {

using namespace kestrix;
using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kFrames = 20'000;

class Counter final : public link::BusinessCommunicationDelegate {
  public:
    void didReceive3820Data(const protocol::MeterReading& record, bool) override {
        ++records;
        benchmark::DoNotOptimize(record.strValue1.data());
    }
    std::size_t records = 0;
};

template <typename Feed>
void inPieces(Bytes stream, std::size_t size, const Feed& feed) {
    for (std::size_t at = 0; at < stream.size(); at += size)
        feed(stream.subspan(at, std::min(size, stream.size() - at)));
}

void report(benchmark::State& state, std::size_t records, std::size_t frames) {
    if (records != frames) state.SkipWithError("records are missing");
    state.counters["per frame"] = benchmark::Counter(
        static_cast<double>(records), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

struct Pipeline {
    platform::AccessoryManager manager;
    platform::UserDefaults defaults{QStringLiteral("/nonexistent/kestrix.ini")};
    link::BluetoothConnect connect{manager, defaults};
    Counter counter;
    Pipeline() { connect.setDelegate(&counter); }
};

// Hands over one piece at a time, without a copy of its own.
class PieceChannel final : public platform::ByteChannel {
  public:
    explicit PieceChannel(PieceChannel*& self) { self = this; }
    void receive(Bytes piece) {
        piece_ = piece;
        events.bytesAvailable();
    }
    std::size_t bytesAvailable() const override { return piece_.size(); }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override {
        const Bytes taken = piece_.first(std::min(max, piece_.size()));
        std::copy(taken.begin(), taken.end(), buffer);
        piece_ = piece_.subspan(taken.size());
        return static_cast<std::ptrdiff_t>(taken.size());
    }
    bool hasSpaceAvailable() const override { return true; }
    std::ptrdiff_t write(Bytes bytes) override { return static_cast<std::ptrdiff_t>(bytes.size()); }
    void close() override { piece_ = {}; }

  private:
    Bytes piece_;
};

class PieceOpener final : public platform::ChannelOpener {
  public:
    std::unique_ptr<platform::ByteChannel> openChannel(const platform::Accessory&,
                                                       const std::string&) override {
        return std::make_unique<PieceChannel>(channel);
    }
    PieceChannel* channel = nullptr;  // owned by the session
};

// From the bytes to the delegate. Argument: bytes a piece.
void ours(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = bench::testerStream(kFrames);
    Pipeline pipeline;
    std::string text;
    for (auto _ : state) {
        inPieces(stream, static_cast<std::size_t>(state.range(0)), [&](Bytes piece) {
            text.clear();
            protocol::appendHexText(text, piece);
            pipeline.connect.analyticalData(text);
        });
    }
    report(state, pipeline.counter.records,
           static_cast<std::size_t>(state.iterations()) * stream.size() / 36);
}
BENCHMARK(ours)->Arg(20)->Arg(512)->Arg(65'536)->Unit(benchmark::kMillisecond);

// The same, through the session's stream events and notifications.
void oursThroughTheSession(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = bench::testerStream(kFrames);
    Pipeline pipeline;
    PieceOpener opener;
    const auto subscription = platform::NotificationCenter::defaultCenter().addObserver(
        link::EADSessionDataReceivedNotification,
        [&](const platform::Notification& event) { pipeline.connect.deviceDataReceived(event); });
    link::EADSessionController controller;
    controller.setupControllerForAccessory(
        std::make_shared<platform::Accessory>(platform::Accessory{1, "Tester", {"p"}, nullptr, &opener}),
        "p");
    controller.openSession();
    for (auto _ : state) {
        inPieces(stream, static_cast<std::size_t>(state.range(0)),
                 [&](Bytes piece) { opener.channel->receive(piece); });
    }
    report(state, pipeline.counter.records,
           static_cast<std::size_t>(state.iterations()) * stream.size() / 36);
}
BENCHMARK(oursThroughTheSession)->Arg(20)->Arg(512)->Arg(65'536)->Unit(benchmark::kMillisecond);

// The baseline.
void onPrintf(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = bench::testerStream(kFrames);
    std::size_t records = 0;
    std::string buffer;
    for (auto _ : state) {
        inPieces(stream, static_cast<std::size_t>(state.range(0)), [&](Bytes piece) {
            for (const std::uint8_t byte : piece) {
                char digits[3];
                std::snprintf(digits, sizeof digits, "%02x", byte);
                buffer += digits;
            }
            std::size_t at = 0;
            while ((at = buffer.find("7e0d1e")) != std::string::npos && buffer.size() >= at + 72) {
                const protocol::MeterReading record =
                    protocol::expectedRecord(protocol::expectedBytes(buffer.substr(at, 72)));
                benchmark::DoNotOptimize(record.strValue1.data());
                ++records;
                buffer = buffer.substr(at + 72);
            }
        });
    }
    report(state, records, static_cast<std::size_t>(state.iterations()) * stream.size() / 36);
}
BENCHMARK(onPrintf)->Arg(20)->Arg(512)->Unit(benchmark::kMillisecond);

// What came before must not matter: the same frames behind ever more garbage without a marker.
void behindGarbage(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = bench::testerStream(kFrames);
    Pipeline pipeline;
    std::string garbage(4096, '5');
    for (std::int64_t i = 0; i < state.range(0); i += 4096) pipeline.connect.analyticalData(garbage);
    std::string text;
    for (auto _ : state) {
        inPieces(stream, 20, [&](Bytes piece) {
            text.clear();
            protocol::appendHexText(text, piece);
            pipeline.connect.analyticalData(text);
        });
    }
    report(state, pipeline.counter.records,
           static_cast<std::size_t>(state.iterations()) * stream.size() / 36);
}
BENCHMARK(behindGarbage)->Arg(0)->Arg(1 << 20)->Arg(1 << 28)->Unit(benchmark::kMillisecond);

// The decoder alone, on the text of one frame.
void decoderAlone(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = bench::testerStream(kFrames);
    std::string text;
    protocol::appendHexText(text, stream);
    std::size_t records = 0;
    for (auto _ : state) {
        for (std::size_t at = 0; at + 72 <= text.size(); at += 72) {
            protocol::KV3820protocal decoder;
            const protocol::MeterReading record =
                std::move(decoder.initFromString(std::string_view(text).substr(at, 72)))
                    .getAllDataStructValue();
            benchmark::DoNotOptimize(record.strValue1.data());
            ++records;
        }
    }
    report(state, records, static_cast<std::size_t>(state.iterations()) * stream.size() / 36);
}
BENCHMARK(decoderAlone)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
