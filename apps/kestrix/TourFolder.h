#pragma once

#include <QString>

#include <string>

namespace kestrix::tour {

// Whether a tour made the folder: it holds the tour's mark.
bool isTourFolder(const QString& folder);

// Makes the folder ready: one that is missing or empty gets the tour's mark, and an earlier tour's database
// and settings are taken out of its own. Answers empty, or in one line why the folder cannot be used; one
// that holds anything else is left as it is.
std::string prepareFolder(const QString& folder);

}  // namespace kestrix::tour
