#pragma once

#include <string>

#include "platform/FailedStep.h"

namespace kestrix::platform {

// What a user can do when this step fails on the way to the tester of this source, as one sentence in his
// language; empty when nothing has failed.
std::string adviceFor(FailedStep step, const std::string& uri);

}  // namespace kestrix::platform
