#include "display/Derivation.h"

#include "display/Display.h"
#include "display/MeasurementTexts.h"
#include "protocol/KV3820protocal.h"

namespace kestrix::display {
namespace {

protocol::MeterReading decoded(const protocol::FrameBytes& frame) {
    protocol::KV3820protocal decoder;
    decoder.initFromNSdata(frame);
    return std::move(decoder).getAllDataStructValue();
}

}  // namespace

StoredTexts derivedFrom(const MeasuredFrames& frames) {
    Display display;
    for (std::size_t row = 0; row < kRcdRows; ++row) {
        if (frames.tripTimes[row]) display.rcdRows[row].value = decoded(*frames.tripTimes[row]).strValue1;
    }
    const protocol::MeterReading record = decoded(frames.reading);
    describeMeasurement(display, record);
    return {record.strfunction, std::move(display.parameters), std::move(display.results)};
}

}  // namespace kestrix::display
