#include "tests/support/ProcessState.h"

#include <malloc.h>

#include <filesystem>
#include <iterator>

#ifdef KESTRIX_SANITIZE
extern "C" std::size_t
__sanitizer_get_current_allocated_bytes();  // its header does not come with every compiler
#endif

namespace kestrix::testing {

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

std::size_t allocatedBytes() {
#ifdef KESTRIX_SANITIZE
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

}  // namespace kestrix::testing
