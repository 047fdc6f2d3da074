#include "live/SpokenReading.h"

namespace kestrix::live {

bool SpokenReading::tell() {
    bool told = Control::tell();
    told |= tellChange(*this, told_, text(), &SpokenReading::textChanged);
    return told;
}

}  // namespace kestrix::live
