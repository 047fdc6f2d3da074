#pragma once

#include <QImage>
#include <QString>

namespace kestrix::artwork {

// Makes the pictures known as ":/artwork/SCALE/NAME.pixels"; scales are 1 to 4 pixels to the point. Call it
// once before the first picture is asked for; again does no harm.
void load();

// The picture of this name ("flash.png") at this scale; none when there is no such picture. It is ready to be
// drawn: its pixels are kept as the screen takes them. A large one is kept at the largest scale alone, and
// each call makes it smaller.
QImage picture(const QString& name, int scale);

}  // namespace kestrix::artwork
