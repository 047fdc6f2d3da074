#include "storage/EvidenceHash.h"

#include <QByteArray>

#include <initializer_list>

#include "storage/CanonicalFields.h"
#include "storage/Sha256Sum.h"

namespace kestrix::storage {
namespace {

constexpr std::size_t kFrameLength = 36;

}  // namespace

Sha256 sha256(std::string_view bytes) {
    Sha256Sum sum;
    sum.add(bytes);
    return sum.value();
}

Sha256 digestOf(const MeasureData& measure) {
    std::string form;
    appendField(form, "kestrix measurement 1");
    appendField(form, measure.recordId);
    for (const std::string* text :
         {&measure.dataName, &measure.function, &measure.parameters, &measure.result, &measure.dateTime,
          &measure.comments, &measure.recordName})
        appendField(form, *text);
    return sha256(form);
}

std::string canonicalForm(const EvidenceRow& row) {
    std::string form;
    appendField(form, "kestrix evidence 1");
    appendField(form, row.place);
    appendField(form, nameOf(row.event));
    appendField(form, row.identity);
    appendField(form, row.dataId);
    appendField(form, bytesOf(row.measurement));
    appendField(form, row.evidence.frame);
    appendField(form, packedTripTimes(row.evidence));
    appendField(form, row.evidence.equalFrames);
    appendField(form, row.evidence.source);
    appendField(form, row.evidence.accessory);
    appendField(form, nameOf(row.evidence.origin));
    appendField(form, row.moment.utc);
    appendField(form, row.moment.utcOffset);
    appendField(form, row.moment.sinceBoot);
    appendField(form, row.program);
    appendField(form, bytesOf(row.previous));
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

std::string hexOf(std::string_view bytes, char between) {
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())).toHex(between).toStdString();
}

std::string hexOf(const Sha256& hash) {
    return hexOf(bytesOf(hash));
}

}  // namespace kestrix::storage
