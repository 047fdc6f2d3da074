#pragma once

#include <string_view>

#include "apps/kestrix-cli/Command.h"

namespace kestrix::cli {

// The commands of kestrix-export, for the help of the programs that do not have them.
inline constexpr Command kExportRow{"export", "Write a test record to a file, or mail it", AtSignal::EndsIt,
                                    nullptr};
inline constexpr Command kVerifyRow{"verify", "Derives every measurement again from what the tester sent",
                                    AtSignal::CutsItShort, nullptr};

// Whether kestrix-export has the command.
constexpr bool isOfExport(std::string_view name) {
    return name == kExportRow.name || name == kVerifyRow.name;
}

}  // namespace kestrix::cli
