#pragma once

namespace kestrix::bench {

// The application with the built-in tester, as fast as it draws: `pictures` of the animation, each in a
// picture of the window of its own, and the frames between them. Says what each costs and how the memory
// grew, and answers 1 when that is by more than a mebibyte after the first fifth.
int longRun(int pictures);

}  // namespace kestrix::bench
