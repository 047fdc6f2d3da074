#pragma once

#include <QString>

#include <memory>
#include <vector>

#include "ui/ScreenStack.h"
#include "ui/Services.h"

namespace kestrix::shell {

// One picture of a screen, in the tour; tests look at the screen in the same states.
struct ScreenStop {
    const char* name;  // of the picture file
    // Brings the screen, which is presented, into the state. None: as it comes.
    void (*prepare)(ui::Screen& screen) = nullptr;
};

// A screen that can be presented. Its row is all that joins it to the application: presenting it, the tour,
// and the tests that go over every screen.
struct ScreenRow {
    ui::ScreenId id;
    const char* title;  // in the frame's toolbar and for screen readers, to be translated
    std::unique_ptr<ui::Screen> (*make)(ui::ScreenId id, const ui::Services& services);
    const char* view;               // the QML file that draws it: "Live/MainView.qml"
    std::vector<ScreenStop> stops;  // at least one
};

// How a controller is made that is constructed from its identity and the services.
template <class Controller>
std::unique_ptr<ui::Screen> make(ui::ScreenId id, const ui::Services& services) {
    return std::make_unique<Controller>(id, services);
}

// Every screen that can be presented.
const std::vector<ScreenRow>& screens();

// From now on the stack presents the row's screen under its identity. The services are copied.
void registerScreen(const ScreenRow& row, ui::ScreenStack& stack, const ui::Services& services);

}  // namespace kestrix::shell
