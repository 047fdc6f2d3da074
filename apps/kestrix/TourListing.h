#pragma once

#include <memory>
#include <vector>

#include "platform/AccessoryListing.h"

namespace kestrix::tour {

// What can be seen where the pictures are made: the same everywhere.
std::vector<std::unique_ptr<platform::AccessoryListing>> listings();

}  // namespace kestrix::tour
