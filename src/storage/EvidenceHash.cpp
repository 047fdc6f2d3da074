#include "storage/EvidenceHash.h"

#include <QCryptographicHash>

#include <algorithm>
#include <initializer_list>

namespace kestrix::storage {
namespace {

constexpr std::size_t kFrameLength = 36;

void append(std::string& form, std::string_view field) {
    const auto length = static_cast<std::uint32_t>(field.size());
    for (int shift = 24; shift >= 0; shift -= 8) form += static_cast<char>(length >> shift & 0xFF);
    form.append(field);
}

void append(std::string& form, std::int64_t number) {
    append(form, std::string_view(std::to_string(number)));
}

std::string_view bytesOf(const Sha256& hash) {
    return {reinterpret_cast<const char*>(hash.data()), hash.size()};
}

}  // namespace

Sha256 sha256(std::string_view bytes) {
    const QByteArray hash = QCryptographicHash::hash(
        QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())), QCryptographicHash::Sha256);
    Sha256 result{};
    std::copy_n(hash.begin(), result.size(), result.begin());
    return result;
}

Sha256 digestOf(const MeasureData& measure) {
    std::string form;
    append(form, "kestrix measurement 1");
    append(form, measure.recordId);
    for (const std::string* text :
         {&measure.dataName, &measure.function, &measure.parameters, &measure.result, &measure.dateTime,
          &measure.comments, &measure.recordName})
        append(form, *text);
    return sha256(form);
}

std::string canonicalForm(const EvidenceRow& row) {
    std::string form;
    append(form, "kestrix evidence 1");
    append(form, row.place);
    append(form, nameOf(row.event));
    append(form, row.identity);
    append(form, row.dataId);
    append(form, bytesOf(row.measurement));
    append(form, row.evidence.frame);
    append(form, packedTripTimes(row.evidence));
    append(form, row.evidence.equalFrames);
    append(form, row.evidence.source);
    append(form, row.evidence.accessory);
    append(form, nameOf(row.evidence.origin));
    append(form, row.moment.utc);
    append(form, row.moment.utcOffset);
    append(form, row.moment.sinceBoot);
    append(form, row.program);
    append(form, bytesOf(row.previous));
    return form;
}

std::string packedTripTimes(const Evidence& evidence) {
    std::string packed;
    for (std::size_t row = 0; row < Evidence::kTripTimes; ++row) {
        if (evidence.tripTimeFrames[row].empty()) continue;
        packed += static_cast<char>(row + 1);
        packed += evidence.tripTimeFrames[row];
    }
    return packed;
}

bool unpackTripTimes(std::string_view packed, Evidence& evidence) {
    decltype(evidence.tripTimeFrames) frames{};
    std::size_t last = 0;
    for (; !packed.empty(); packed.remove_prefix(1 + kFrameLength)) {
        const auto row = static_cast<std::size_t>(static_cast<unsigned char>(packed.front()));
        if (packed.size() < 1 + kFrameLength || row <= last || row > Evidence::kTripTimes) return false;
        frames[row - 1] = packed.substr(1, kFrameLength);
        last = row;
    }
    evidence.tripTimeFrames = std::move(frames);
    return true;
}

std::string hexOf(const Sha256& hash) {
    const std::string_view bytes = bytesOf(hash);
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())).toHex().toStdString();
}

}  // namespace kestrix::storage
