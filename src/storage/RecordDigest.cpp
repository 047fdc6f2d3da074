#include "storage/RecordDigest.h"

#include <algorithm>

#include "storage/CanonicalFields.h"
#include "storage/EvidenceHash.h"

namespace kestrix::storage {

RecordDigest::RecordDigest(const RecordData& record) {
    std::string form;
    appendField(form, "kestrix record 1");
    appendField(form, record.recordId);
    for (const std::string* text : {&record.company, &record.operators, &record.addres, &record.startTime,
                                    &record.endTime, &record.dates})
        appendField(form, *text);
    appendField(form, record.samples);
    appendField(form, record.serial);
    appendField(form, record.projectName);
    take(form);
}

void RecordDigest::add(const MeasureData& measure, const std::optional<EvidenceRow>& recorded) {
    std::string form;
    appendField(form, measure.dataId);
    appendField(form, bytesOf(digestOf(measure)));
    appendField(form, recorded ? bytesOf(recorded->hash) : std::string_view());
    take(form);
}

void RecordDigest::take(const std::string& form) {
    hash_.addData(QByteArrayView(form.data(), static_cast<qsizetype>(form.size())));
}

Sha256 RecordDigest::value() const {
    const QByteArray bytes = hash_.result();
    Sha256 value{};
    std::copy_n(bytes.begin(), value.size(), value.begin());
    return value;
}

}  // namespace kestrix::storage
