#pragma once

#include <string>
#include <vector>

namespace kestrix::cli {

// How many seconds it takes to know of each of these places whether a tester is there, or why not.
int secondsToLookAt(const std::vector<std::string>& uris);

}  // namespace kestrix::cli
