#pragma once

#include <string>

#include "platform/DocumentsFolder.h"

namespace kestrix::shell {

// Whether a tester measured them.
enum class Readings { Measured, MadeUp };

// Why such readings do not come into the folder, in one line; empty: they may. The two standard folders take
// their own kind each. Any other notes in its kestrix.ini which kind it took first; one that has a database
// and no note holds what was measured, as far as anybody knows. Changes nothing.
std::string whyKeptOut(Readings readings, const platform::DocumentsFolder& folder);

// Notes the kind in the folder, which is there and takes it.
void noteReadings(Readings readings, const platform::DocumentsFolder& folder);

}  // namespace kestrix::shell
