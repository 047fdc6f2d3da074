#pragma once

#include <chrono>
#include <string>

#include "platform/DocumentsFolder.h"
#include "storage/DatabaseLook.h"

namespace kestrix::storage {

// Why such readings do not come into the folder, in one line; empty: they may. look: what its database told.
// Where that does not say what it holds, the two standard folders take their own kind each, and any other has
// noted in its kestrix.ini which kind it took first; one that has a database and no note holds what was
// measured, as far as anybody knows. Nobody knows while the database is locked: then either may come, and
// whoever asked must ask again before anything is stored. Changes nothing.
std::string whyKeptOut(Readings readings, const platform::DocumentsFolder& folder, const DatabaseLook& look);

// Notes the kind in the folder, which takes it.
void noteReadings(Readings readings, const platform::DocumentsFolder& folder);

// Marks the folder's database, where there is one that did not say so. A failure is in the log.
void markReadings(Readings readings, const platform::DocumentsFolder& folder, const DatabaseLook& look,
                  std::chrono::milliseconds patience);

}  // namespace kestrix::storage
