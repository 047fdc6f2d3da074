#include "artwork/Pictures.h"

#include <QtGlobal>

// The macro declares a function of the global namespace and must stand there.
static void initResource() {
    Q_INIT_RESOURCE(artwork);
}

namespace kestrix::artwork {

void load() {
    initResource();
}

}  // namespace kestrix::artwork
