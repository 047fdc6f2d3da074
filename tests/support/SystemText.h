#pragma once

#include <string>
#include <system_error>

namespace kestrix::testing {

// What the system calls this error, in the language that it speaks here.
inline std::string systemText(int error) {
    return std::generic_category().message(error);
}

}  // namespace kestrix::testing
