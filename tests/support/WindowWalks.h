#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/WindowFixture.h"

class QAccessibleInterface;

namespace kestrix::testing {

// Walks over whatever the window shows now. Each answers what is wrong, one sentence each, as a person would
// say it.
class WindowWalks : public WindowFixture {
  protected:
    using Problems = std::vector<std::string>;

    // Every text that can be used against every pixel that it really stands on: 4.5 : 1.
    Problems contrastProblems();
    // Everything that a screen reader finds has a name, a role and a place, and every text that is shown is
    // found.
    Problems accessibilityProblems();
    // Tab reaches everything that can take the keyboard, from top to bottom, and begins anew behind the last;
    // the frame around what has the keyboard stands out by 3 : 1.
    Problems keyProblems();
    // All of them, at one and at three pixels a point.
    Problems allProblems();

    // For who wants to look: the environment variable KESTRIX_PICTURES names the folder that gets the
    // picture, at one and at three pixels a point.
    void keepPictures(const char* name);

    // Everything below the window that a screen reader finds.
    std::vector<QAccessibleInterface*> found();
    // Presses as a screen reader does.
    void pressByScreenReader(const char* name);

  private:
    // The keyboard is at the screen as a whole, as when it came: no frame is shown.
    void leaveTheControls();
    QRect pixelsInWindow(const QRectF& scene);
    std::vector<QQuickItem*> usableTexts();
    std::vector<QQuickItem*> tabStops();
    QQuickItem* stopAtKeyboard();  // a list, for its row
    Problems frameProblems(const QImage& without);
};

// For EXPECT_EQ: one problem a line, nothing without any.
std::string inLines(const std::vector<std::string>& problems);

}  // namespace kestrix::testing
