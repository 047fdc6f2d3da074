#pragma once

#include <string>

#include "display/MeasuredFrames.h"

namespace kestrix::display {

// The texts by which a measurement is stored.
struct StoredTexts {
    std::string function;
    std::string parameters;
    std::string results;

    bool operator==(const StoredTexts&) const = default;
};

// The texts once more, from the frames alone: equal to those that Record took, by the same steps.
StoredTexts derivedFrom(const MeasuredFrames& frames);

}  // namespace kestrix::display
