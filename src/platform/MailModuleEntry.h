#pragma once

#include "platform/MailModule.h"

namespace kestrix::platform {

// The one function that the module has to show, of this name.
inline constexpr const char* kMailModuleEntry = "kestrixMakeMailParts";
using MakeMailParts = void (*)(MailParts& parts);

}  // namespace kestrix::platform
