#include "shell/InformationStops.h"

#include "shell/PicturePage.h"

namespace kestrix::shell {
namespace {

// As if the key had been pressed so often.
void pressPageDown(ui::Screen& presented, int times) {
    constexpr double kPage = 480;  // what the keys go on by in a window of the usual height
    dynamic_cast<PicturePage&>(presented).scrollView.scrollTo(times * kPage);
}

}  // namespace

void showSecondPage(ui::Screen& presented) {
    pressPageDown(presented, 1);
}

void showThirdPage(ui::Screen& presented) {
    pressPageDown(presented, 2);
}

void showFourthPage(ui::Screen& presented) {
    pressPageDown(presented, 3);
}

void showLastPage(ui::Screen& presented) {
    PicturePage& page = dynamic_cast<PicturePage&>(presented);
    page.scrollView.scrollTo(page.scrollView.contentHeight());
}

}  // namespace kestrix::shell
