#pragma once

#include <cstdint>
#include <string>

#include "display/MeasuredFrames.h"
#include "platform/AccessoryManager.h"
#include "storage/Evidence.h"

namespace kestrix::live {

// From where the records come: the kind of source and the name of the accessory, as they were when the latest
// one came. It asks for them when the accessory is another one, and not with each record.
class ReadingSource {
  public:
    // device: that the record came from; none is none. The manager has its source.
    void recordCame(const platform::AccessoryPtr& device, const platform::AccessoryManager& manager);

    // What is kept with a measurement that was made from these frames. simulated: it is known otherwise that
    // nothing was measured.
    storage::Evidence evidenceOf(const display::MeasuredFrames& frames, bool simulated) const;

  private:
    std::uint32_t connectionId_ = 0;
    std::string scheme_;
    std::string name_;
};

}  // namespace kestrix::live
