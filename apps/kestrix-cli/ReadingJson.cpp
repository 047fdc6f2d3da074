#include "apps/kestrix-cli/ReadingJson.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "apps/kestrix-cli/JsonRoom.h"
#include "apps/kestrix-cli/JsonText.h"
#include "apps/kestrix-cli/ReadingFields.h"

// A record's object is what decode spends most of its time on. So the keys are made by the compiler, the room
// is measured beforehand, and an empty ValData is copied whole. bench/ReadingJson_bench.cpp has what this is
// worth beside a general library; docs/performance.md has its figures.
namespace kestrix::cli {
namespace {

using protocol::MeterReading;
using protocol::ValData;

// What the values of a struct take at most, beside the characters of their texts.
constexpr std::size_t kNumberRoom = 24;  // the longest double in its shortest form

template <class Struct>
struct FieldsOf;
template <>
struct FieldsOf<ValData> : ValDataFields {};
template <>
struct FieldsOf<MeterReading> : ReadingFields {};

template <class Struct, class F>
using TypeOf = std::remove_cvref_t<decltype(std::declval<const Struct&>().*F::member)>;

// "name": as characters; every value is followed by a comma, the last of which becomes the closing brace.
template <Name name>
constexpr auto kKey = [] {
    std::array<char, name.view().size() + 3> key{};
    key.front() = '"';
    std::copy(name.view().begin(), name.view().end(), key.begin() + 1);
    key[key.size() - 2] = '"';
    key.back() = ':';
    return key;
}();

template <class Struct>
constexpr std::size_t roomWithoutTexts() {
    std::size_t room = 2;  // the brace and a comma
    FieldsOf<Struct>::forEach([&room]<class F>(F) {
        room += kKey<F::name>.size() + 1;
        if constexpr (std::is_same_v<TypeOf<Struct, F>, ValData>) {
            room += roomWithoutTexts<ValData>();
        } else {
            room += kNumberRoom;  // more than a flag or two quotes
        }
    });
    return room;
}

// An all-zero ValData, which most of a record's ten are, with the comma behind it.
constexpr auto kZeroValData = [] {
    std::array<char, roomWithoutTexts<ValData>()> room{};
    auto at = room.begin();
    *at++ = '{';
    ValDataFields::forEach([&at]<class F>(F) {
        constexpr bool isText = std::is_same_v<TypeOf<ValData, F>, std::string>;
        constexpr std::string_view zero = isText ? "\"\"," : "0,";
        at = std::copy(kKey<F::name>.begin(), kKey<F::name>.end(), at);
        at = std::copy(zero.begin(), zero.end(), at);
    });
    at[-1] = '}';
    *at++ = ',';
    return std::pair(room, static_cast<std::size_t>(at - room.begin()));
}();

bool isAllZero(const ValData& data) {
    return data.strValD1.empty() && data.strUnitD1.empty() &&
           (data.pointPosD1 | data.NoData | data.OlData | data.bLess) == 0 &&
           std::bit_cast<std::uint64_t>(data.ValD1) == 0;
}

template <class Struct>
std::size_t textBytes(const Struct& value) {
    std::size_t bytes = 0;
    FieldsOf<Struct>::forEach([&]<class F>(F) {
        if constexpr (std::is_same_v<TypeOf<Struct, F>, std::string>) {
            bytes += (value.*F::member).size();
        } else if constexpr (std::is_same_v<TypeOf<Struct, F>, ValData>) {
            bytes += textBytes(value.*F::member);
        }
    });
    return bytes;
}

// Writes into room that its maker has measured beforehand; every value ends in a comma.
class JsonWriter {
  public:
    explicit JsonWriter(char* at) : at_(at) {}

    char* at() const { return at_; }

    template <class Struct>
    void object(const Struct& value) {
        *at_++ = '{';
        FieldsOf<Struct>::forEach([&]<class F>(F) {
            copy(kKey<F::name>.data(), kKey<F::name>.size());
            put(value.*F::member);
        });
        at_[-1] = '}';
    }

  private:
    void copy(const char* from, std::size_t size) {
        std::memcpy(at_, from, size);
        at_ += size;
    }

    void put(bool value) {
        const std::string_view word = value ? "true," : "false,";
        copy(word.data(), word.size());
    }

    void put(std::uint8_t value) {
        if (value >= 100) *at_++ = static_cast<char>('0' + value / 100);
        if (value >= 10) *at_++ = static_cast<char>('0' + value / 10 % 10);
        *at_++ = static_cast<char>('0' + value % 10);
        *at_++ = ',';
    }

    void put(double value) {
        constexpr double exactBelow = 9007199254740992.0;  // 2^53
        if (std::fabs(value) < exactBelow) {
            if (const auto whole = static_cast<std::int64_t>(value); static_cast<double>(whole) == value) {
                putWhole(whole, std::signbit(value));
                return;
            }
        } else if (!std::isfinite(value)) {
            copy("null,", 5);
            return;
        }
        at_ = std::to_chars(at_, at_ + kNumberRoom, value).ptr;
        *at_++ = ',';
    }

    void putWhole(std::int64_t value, bool negative) {
        if (value == 0) {
            copy(negative ? "-0.0," : "0,", negative ? 5 : 2);
            return;
        }
        at_ = std::to_chars(at_, at_ + kNumberRoom, value).ptr;
        *at_++ = ',';
    }

    void put(const std::string& text) {
        at_ = putJsonText(at_, text);
        *at_++ = ',';
    }

    void put(const ValData& value) {
        if (isAllZero(value)) {
            copy(kZeroValData.first.data(), kZeroValData.second);
            return;
        }
        object(value);
        *at_++ = ',';
    }

    char* at_;
};

}  // namespace

void appendReadingJson(std::string& out, const MeterReading& reading) {
    const std::size_t room = roomWithoutTexts<MeterReading>() + kEscapedCharacter * textBytes(reading);
    appendWithin(out, room, [&reading](char* at) {
        JsonWriter writer(at);
        writer.object(reading);
        return writer.at();
    });
}

}  // namespace kestrix::cli
