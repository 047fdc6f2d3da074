#pragma once

#include <string>

#include "platform/AccessorySources.h"

namespace kestrix::cli {

// How a tester is named, for the help of a word that names one.
inline const std::string kUriForms = platform::sourceForms();
inline const char* const kUriHelp = kUriForms.c_str();

}  // namespace kestrix::cli
