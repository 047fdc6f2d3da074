#pragma once

#include <optional>

#include "platform/DocumentsFolder.h"

namespace kestrix::storage {

// Whether a tester measured them.
enum class Readings { Measured, MadeUp };

// The kind of readings that the folder's database says it holds, in the number that SQLite keeps for the
// application (PRAGMA application_id). None: no database, one that cannot be read, or one without a mark.
// Makes no file.
std::optional<Readings> markedReadings(const platform::DocumentsFolder& folder);

// Marks the folder's database, where there is one that does not say so yet. A failure is in the log.
void markReadings(Readings readings, const platform::DocumentsFolder& folder);

}  // namespace kestrix::storage
