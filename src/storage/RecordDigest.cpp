#include "storage/RecordDigest.h"

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
    sum_.add(form);
}

void RecordDigest::add(const MeasureData& measure, const std::optional<EvidenceRow>& recorded) {
    std::string form;
    appendField(form, measure.dataId);
    appendField(form, bytesOf(digestOf(measure)));
    appendField(form, recorded ? bytesOf(recorded->hash) : std::string_view());
    sum_.add(form);
}

}  // namespace kestrix::storage
