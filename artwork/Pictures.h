#pragma once

namespace kestrix::artwork {

// Makes the pictures known as ":/artwork/SCALE/NAME.png" (qrc:/artwork/... in QML); scales are 1 to 4 pixels
// to the point. Call it once before the first window; again does no harm.
void load();

}  // namespace kestrix::artwork
