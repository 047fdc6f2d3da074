// One reading as a JSON object: our writer, and beside it a general JSON library's dump of the same object.

#include "apps/kestrix-cli/ReadingJson.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "apps/kestrix-cli/ReadingFields.h"
#include "protocol/KV3820protocal.h"
#include "protocol/MeterReading.h"

namespace {

using kestrix::cli::ReadingFields;
using kestrix::cli::ValDataFields;
using kestrix::protocol::MeterReading;
using kestrix::protocol::ValData;

// Frames as a tester sends them: every function, whole and fractional readings, no data, overload, all wires.
std::vector<MeterReading> mixedReadings() {
    std::vector<MeterReading> readings;
    constexpr std::array<std::uint8_t, 3> noDataBytes{0x00, 0x00, 0x21};
    for (unsigned n = 0; n < 96; ++n) {
        std::array<std::uint8_t, 36> frame{};
        const auto low = static_cast<std::uint8_t>(n * 37U);
        frame = {0x7E, 0x0D, 0x1E, static_cast<std::uint8_t>(n % 4), static_cast<std::uint8_t>(n % 2)};
        frame[8] = 0x55;
        frame[9] = 0xAA;
        frame[10] = static_cast<std::uint8_t>('1' + n % 6);
        frame[12] = low;
        frame[13] = static_cast<std::uint8_t>(n % 5);
        frame[14] = static_cast<std::uint8_t>(n % 3);
        frame[15] = static_cast<std::uint8_t>(low ^ 0x55U);
        frame[17] = static_cast<std::uint8_t>(n % 2);
        frame[18] = 0xFC;
        frame[19] = 0x08;
        frame[20] = 0x01;
        frame[21] = 50;
        frame[24] = static_cast<std::uint8_t>(n % 2 == 0 ? 0x09 : 0x02);
        frame[25] = noDataBytes[n % noDataBytes.size()];
        frame[29] = 230;
        readings.push_back(kestrix::protocol::KV3820protocal().initFromNSdata(frame).getAllDataStructValue());
    }
    return readings;
}

template <class Fields, class Struct>
nlohmann::ordered_json toJson(const Struct& value) {
    nlohmann::ordered_json json;
    Fields::forEach([&]<class F>(F) {
        const auto& member = value.*F::member;
        if constexpr (std::is_same_v<std::remove_cvref_t<decltype(member)>, ValData>) {
            json[F::name.text] = toJson<ValDataFields>(member);
        } else {
            json[F::name.text] = member;
        }
    });
    return json;
}

template <class Record, class Append>
void measure(benchmark::State& state, const std::vector<Record>& readings, Append append) {
    std::string out;
    std::size_t bytes = 0;
    for (auto _ : state) {
        out.clear();
        for (const auto& reading : readings) append(out, reading);
        benchmark::DoNotOptimize(out.data());
        bytes += out.size();
    }
    const auto records = static_cast<double>(state.iterations()) * static_cast<double>(readings.size());
    state.counters["s/record"] =
        benchmark::Counter(records, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

void BM_appendReadingJson(benchmark::State& state) {
    measure(state, mixedReadings(), kestrix::cli::appendReadingJson);
}
BENCHMARK(BM_appendReadingJson);

// The same work with a general library: building its object and writing it.
void BM_libraryBuildAndDump(benchmark::State& state) {
    measure(state, mixedReadings(), [](std::string& out, const MeterReading& reading) {
        out += toJson<ReadingFields>(reading).dump();
    });
}
BENCHMARK(BM_libraryBuildAndDump);

// Its writing alone, of objects built beforehand.
void BM_libraryDump(benchmark::State& state) {
    std::vector<nlohmann::ordered_json> objects;
    for (const auto& reading : mixedReadings()) objects.push_back(toJson<ReadingFields>(reading));
    measure(state, objects,
            [](std::string& out, const nlohmann::ordered_json& object) { out += object.dump(); });
}
BENCHMARK(BM_libraryDump);

}  // namespace

BENCHMARK_MAIN();
