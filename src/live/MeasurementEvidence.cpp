#include "live/MeasurementEvidence.h"

#include <algorithm>

#include "platform/AccessoryUri.h"

namespace kestrix::live {
namespace {

using storage::Origin;

std::string bytesOf(const protocol::FrameBytes& frame) {
    return {frame.begin(), frame.end()};
}

Origin originOf(const std::string& scheme, bool simulated) {
    if (scheme == "replay") return Origin::Replayed;
    return scheme == "simulator" || simulated ? Origin::Simulated : Origin::Measured;
}

std::string schemeOf(const platform::Accessory& device, const platform::AccessoryManager& manager) {
    const auto& sources = manager.sources();
    const auto own = std::find_if(sources.begin(), sources.end(), [&device](const auto& source) {
        return static_cast<platform::ChannelOpener*>(source.get()) == device.opener;
    });
    if (own == sources.end()) return {};
    const auto uri = platform::parseAccessoryUri((*own)->uri());
    return uri ? uri->scheme : std::string();
}

}  // namespace

void ReadingSource::recordCame(const platform::AccessoryPtr& device,
                               const platform::AccessoryManager& manager) {
    const std::uint32_t connectionId = device ? device->connectionId : 0;
    if (connectionId == connectionId_) return;
    connectionId_ = connectionId;
    scheme_ = device ? schemeOf(*device, manager) : std::string();
    name_ = device ? device->name : std::string();
}

storage::Evidence ReadingSource::evidenceOf(const display::MeasuredFrames& frames, bool simulated) const {
    storage::Evidence evidence{.frame = bytesOf(frames.reading),
                               .equalFrames = frames.equalInARow,
                               .source = scheme_,
                               .accessory = name_,
                               .origin = originOf(scheme_, simulated)};
    static_assert(storage::Evidence::kTripTimes == display::kRcdRows);
    for (std::size_t row = 0; row < display::kRcdRows; ++row) {
        if (frames.tripTimes[row]) evidence.tripTimeFrames[row] = bytesOf(*frames.tripTimes[row]);
    }
    return evidence;
}

}  // namespace kestrix::live
