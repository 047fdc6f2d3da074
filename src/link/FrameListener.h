#pragma once

#include <memory>

#include "platform/Listener.h"

namespace kestrix::link {

// Hears frames as the pipeline cuts them, at odd hexadecimal digits too. A frame that the decoder calls
// foreign does not count.
std::unique_ptr<platform::Listener> makeFrameListener();

}  // namespace kestrix::link
