#pragma once

#include <QObject>

#include <functional>
#include <vector>

namespace kestrix::ui {

// Which key does what on a screen: one table, filled by the controller and read by the view's one handler. A
// key acts only with plain modifiers, as KeyRules says.
class KeyTable : public QObject {
    Q_OBJECT

  public:
    // What holding the key down means.
    enum class Held { ActsOnce, Repeats };

    // A key that is already there gets the new action.
    void add(Qt::Key key, std::function<void()> action, Held held = Held::ActsOnce);

    // For the view: a key went down, or repeats itself. True when it is one of the table and bears no
    // modifier: then it is used up, whether it acted or not.
    Q_INVOKABLE bool press(int key, int modifiers, bool repeated) const;

  private:
    struct Row {
        Qt::Key key;
        std::function<void()> action;
        Held held;
    };
    std::vector<Row> rows_;
};

}  // namespace kestrix::ui
