#include "ui/KeyTable.h"

#include <algorithm>
#include <utility>

#include "ui/KeyRules.h"

namespace kestrix::ui {

void KeyTable::add(Qt::Key key, std::function<void()> action, Held held) {
    std::erase_if(rows_, [key](const Row& row) { return row.key == key; });
    rows_.push_back({key, std::move(action), held});
}

bool KeyTable::press(int key, int modifiers, bool repeated) const {
    if (!KeyRules::arePlain(modifiers)) return false;
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [key](const Row& row) { return row.key == key; });
    if (found == rows_.end()) return false;
    if (repeated && found->held == Held::ActsOnce) return true;
    const auto action = found->action;  // it may change this table
    action();
    return true;
}

}  // namespace kestrix::ui
