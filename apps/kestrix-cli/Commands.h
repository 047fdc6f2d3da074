#pragma once

#include <span>

#include "apps/kestrix-cli/Command.h"

namespace kestrix::cli {

// All commands, in the order of the help.
std::span<const Command* const> allCommands();

}  // namespace kestrix::cli
