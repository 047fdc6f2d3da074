#pragma once

namespace kestrix::cli {

// Gives the log of a program on Qt its form, and lets it go to standard error without waiting for a reader.
void installProgramLog(bool verbose);

}  // namespace kestrix::cli
