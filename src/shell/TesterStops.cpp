#include "shell/TesterStops.h"

#include <utility>

#include "shell/TesterViewController.h"

namespace kestrix::shell {

void showTypedAddress(ui::Screen& presented) {
    auto& screen = dynamic_cast<TesterViewController&>(presented);
    const std::pair<ui::TextField*, const char*> typed[] = {{&screen.address, "192.168.1.20:4000"},
                                                            {&screen.capture, "~/Harbour Street 12.kxc"}};
    for (const auto& [field, text] : typed) field->setText(QLatin1String(text));
}

}  // namespace kestrix::shell
