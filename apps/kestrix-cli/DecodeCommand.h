#pragma once

#include <string>

#include "apps/kestrix-cli/ExitStatus.h"

namespace kestrix::cli {

// Raw bytes (a capture or any stream) to one JSON object a record, through the application's own pipeline.
// Constant memory; records come out as soon as their bytes are read. file: a path, or "-" for standard input.
// screen: each object also tells what the live screen shows after its record.
ExitStatus decodeFile(const std::string& file, bool screen);

// One frame text to its JSON object.
ExitStatus decodeFrameText(const std::string& hexText, bool screen);

}  // namespace kestrix::cli
