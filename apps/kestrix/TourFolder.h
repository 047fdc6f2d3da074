#pragma once

#include <QString>

#include <string>

namespace kestrix::tour {

// Pixels to the point, each with a folder of pictures.
inline constexpr int kScales[] = {1, 3};
QString picturesFolder(int scale);

// Whether a tour made the folder: it holds the tour's mark.
bool isTourFolder(const QString& folder);

struct FolderProblem {
    std::string why;     // in one line; empty: none
    int exitStatus = 1;  // of the program that ends with it: 1 failed, 2 wrong usage
};

// Makes the folder ready: one that is missing or empty gets the tour's mark, and an earlier tour's database
// and settings are taken out of its own. A folder that holds anything else, or leads to one by a link where
// the pictures come, is left as it is.
FolderProblem prepareFolder(const QString& folder);

}  // namespace kestrix::tour
