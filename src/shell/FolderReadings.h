#pragma once

#include <string>

#include "platform/DocumentsFolder.h"
#include "storage/ReadingsMark.h"

namespace kestrix::shell {

using storage::Readings;

// Why such readings do not come into the folder, in one line; empty: they may. A database says what it holds.
// Where it does not, the two standard folders take their own kind each, and any other has noted in its
// kestrix.ini which kind it took first; one that has a database and no note holds what was measured, as far
// as anybody knows. Changes nothing.
std::string whyKeptOut(Readings readings, const platform::DocumentsFolder& folder);

// Notes the kind in the folder, which takes it, and in its database, where there is one.
void noteReadings(Readings readings, const platform::DocumentsFolder& folder);

}  // namespace kestrix::shell
