#include "live/SpokenReading.h"

namespace kestrix::live {

void SpokenReading::tell() {
    Control::tell();
    KESTRIX_TELL(told_, text(), textChanged);
}

}  // namespace kestrix::live
