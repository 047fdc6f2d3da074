#pragma once

#include <memory>

#include "platform/Listener.h"

namespace kestrix::link {

// Hears frames as the pipeline cuts them, at odd hexadecimal digits too. A frame counts
// when its marker stands behind its start bytes, whatever its function: three bytes alone come along in
// noise.
std::unique_ptr<platform::Listener> makeFrameListener();

}  // namespace kestrix::link
