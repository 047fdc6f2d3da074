#pragma once

#include <string>

namespace kestrix {

// Why no window can be shown, in a few words; empty: it can. Asks the display that the environment names for
// a connection, as the platform plugin will, which would abort the process where there is none.
std::string displayProblem();

}  // namespace kestrix
