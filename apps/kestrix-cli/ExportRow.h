#pragma once

#include "apps/kestrix-cli/Command.h"

namespace kestrix::cli {

// The command `export` for the help of the programs that do not have it.
inline constexpr Command kExportRow{"export", "Write a test record to a file, or mail it", AtSignal::EndsIt,
                                    nullptr};

}  // namespace kestrix::cli
