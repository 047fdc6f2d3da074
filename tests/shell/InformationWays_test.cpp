// Where the information screens lead: whatever can be pressed on one of them leads where it is meant to, and
// nothing else leads anywhere.
#include <QAccessible>
#include <QtTest/QTest>

#include <algorithm>
#include <functional>
#include <map>

#include "shell/ProductContent.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

using ui::ScreenId;
// By what is pressed: the screen that comes, "back", or the address that is opened. What leads nowhere is not
// in it.
using Ways = std::map<std::string, std::string>;

bool takesPresses(const QQuickItem& item) {
    if (!item.isVisible() || !item.isEnabled()) return false;
    if (item.inherits("QQuickMouseArea") || item.inherits("QQuickMultiPointTouchArea")) return true;
    const QObjectList children = item.children();
    return std::any_of(children.begin(), children.end(), [](const QObject* child) {
        return child->inherits("QQuickPointerHandler") && !child->inherits("QQuickHoverHandler");
    });
}

// Of the item, or of the nearest around it that has one.
std::string nameAround(const QQuickItem& item) {
    const QQuickItem* at = &item;
    while (at != nullptr && at->objectName().isEmpty()) at = at->parentItem();
    return at != nullptr ? at->objectName().toStdString() : "";
}

class InformationWays : public testing::WindowWalks {
  protected:
    InformationWays() {
        options_.slideDuration = std::chrono::milliseconds(0);
        options_.openAddress = [this](const QString& address) {
            opened_ += address.toStdString();
            return true;
        };
    }

    // Alone in front of the live screen, as it is when it comes.
    void show(ScreenId id) {
        while (app().screens().topmost() != nullptr) app().screens().dismiss(false);
        settle();
        opened_.clear();
        app().screens().present(id, false);
        settle();
    }
    // Where the press, whatever it was, has led from there; empty: nowhere.
    std::string ledTo(ScreenId from) {
        if (!opened_.empty()) return opened_;
        const ui::Screen* const top = app().screens().topmost();
        if (app().alerts().isShown() || app().notice().isShown()) return "a message";
        if (top == nullptr) return "back";
        if (app().screens().count() == 1 && top->id() == from) return "";
        return ui::nameOf(top->id());
    }

    std::vector<QQuickItem*> pressables() {
        std::vector<QQuickItem*> items = testing::itemsUnder(item("stage"));
        std::erase_if(items, [](const QQuickItem* one) { return !takesPresses(*one); });
        return items;
    }
    std::vector<QAccessibleInterface*> pressedByScreenReader() {
        std::vector<QAccessibleInterface*> all = found();
        std::erase_if(all, [](QAccessibleInterface* one) {
            return one->actionInterface() == nullptr ||
                   !one->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction());
        });
        return all;
    }
    // In the middle of it, where the page is scrolled to when it lies beyond the window.
    void press(QQuickItem& one, bool byFinger) {
        QQuickItem* const page = testing::findItem(item("stage"), QStringLiteral("scrollView"));
        if (page != nullptr && !window().contentItem()->contains(pointIn(one))) {
            page->setProperty("contentY", page->property("contentY").toDouble() + pointIn(one).y() - 300);
            settle();
        }
        const QPoint at = pointIn(one);
        if (!byFinger) return QTest::mouseClick(&window(), Qt::LeftButton, {}, at);
        QTest::touchEvent(&window(), touchScreen()).press(0, at);
        QTest::touchEvent(&window(), touchScreen()).release(0, at);
    }

    // press: the n-th of what can be pressed, and says its name; empty behind the last.
    Ways waysFrom(ScreenId from, const std::function<std::string(std::size_t)>& press) {
        Ways ways;
        for (std::size_t n = 0;; ++n) {
            show(from);
            const std::string pressed = press(n);
            if (pressed.empty()) return ways;
            settle();
            const std::string there = ledTo(from);
            if (!there.empty()) {
                EXPECT_EQ(ways.try_emplace(pressed, there).first->second, there) << pressed;
            }
        }
    }

    std::string opened_;
};

struct Row {
    ScreenId from;
    Ways ways;
};

std::vector<Row> expectedWays() {
    const ProductContent product = productContent();
    return {{ScreenId::Help,
             {{"btnBack", "back"}, {"btnBluetooth", "BluetoothConnectionHelp"}, {"btnSafety", "SafetyTips"}}},
            {ScreenId::BluetoothConnectionHelp, {{"btnBack", "back"}}},
            {ScreenId::SafetyTips, {{"btnBack", "back"}}},
            {ScreenId::HowtoUse, {{"btnBack", "back"}}},
            {ScreenId::About, {{"btnBack", "back"}, {"btnURL", product.webAddress.toStdString()}}},
            {ScreenId::MoreApps,
             {{"btnBack", "back"},
              {"appRow0", product.applications.at(0).address.toStdString()},
              {"appRow1", product.applications.at(1).address.toStdString()},
              {"appRow2", product.applications.at(2).address.toStdString()}}}};
}

TEST_F(InformationWays, AFingerOrTheMouseOnAnythingThatTakesThemLeadsWhereItIsMeantTo) {
    open();
    for (const bool byFinger : {true, false}) {
        for (const Row& row : expectedWays()) {
            const Ways ways = waysFrom(row.from, [this, byFinger](std::size_t n) -> std::string {
                const std::vector<QQuickItem*> all = pressables();
                if (n >= all.size()) return "";
                const std::string name = nameAround(*all[n]);
                press(*all[n], byFinger);
                return name;
            });
            EXPECT_EQ(ways, row.ways) << ui::nameOf(row.from) << (byFinger ? " by finger" : " by mouse");
        }
    }
}

TEST_F(InformationWays, AScreenReadersPressLeadsWhereItIsMeantTo) {
    open();
    for (const Row& row : expectedWays()) {
        const Ways ways = waysFrom(row.from, [this](std::size_t n) -> std::string {
            const std::vector<QAccessibleInterface*> all = pressedByScreenReader();
            if (n >= all.size()) return "";
            const std::string name = all[n]->object()->objectName().toStdString();
            all[n]->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            return name.empty() ? "one without a name" : name;
        });
        EXPECT_EQ(ways, row.ways) << ui::nameOf(row.from);
    }
}

TEST_F(InformationWays, AKeyThatPressesLeadsWhereItIsMeantToWhereverTheKeyboardIs) {
    open();
    for (const Row& row : expectedWays()) {
        std::string first;
        const Ways ways = waysFrom(row.from, [this, &first](std::size_t n) -> std::string {
            for (std::size_t tab = 0; tab <= n; ++tab) pressKey(Qt::Key_Tab);
            const std::string name = focused();
            if (n == 0) first = name;
            if (n > 0 && name == first) return "";
            pressKey(Qt::Key_Return);
            return name;
        });
        EXPECT_EQ(ways, row.ways) << ui::nameOf(row.from);
    }
}

TEST_F(InformationWays, NoOtherKeyLeadsAnywhereButBack) {
    std::vector<int> keys{Qt::Key_Back, Qt::Key_Menu, Qt::Key_Help, Qt::Key_Backspace, Qt::Key_Delete};
    for (int key = Qt::Key_Space; key <= Qt::Key_QuoteLeft; ++key) keys.push_back(key);
    for (int key = Qt::Key_BraceLeft; key <= Qt::Key_AsciiTilde; ++key) keys.push_back(key);
    for (int key = Qt::Key_Home; key <= Qt::Key_PageDown; ++key) keys.push_back(key);
    for (int key = Qt::Key_F1; key <= Qt::Key_F10; ++key) keys.push_back(key);
    keys.push_back(Qt::Key_Escape);
    open();
    for (const Row& row : expectedWays()) {
        show(row.from);
        for (const Qt::KeyboardModifier modifier :
             {Qt::NoModifier, Qt::ShiftModifier, Qt::AltModifier, Qt::ControlModifier}) {
            for (const int key : keys) {
                const bool closesTheWindow =
                    modifier == Qt::ControlModifier && (key == Qt::Key_Q || key == Qt::Key_W);
                if (closesTheWindow) continue;
                pressKey(key, modifier);
                const std::string there = ledTo(row.from);
                const bool back =
                    modifier == Qt::NoModifier && (key == Qt::Key_Escape || key == Qt::Key_Back);
                EXPECT_EQ(there, back ? "back" : "")
                    << ui::nameOf(row.from) << ": " << key << " with " << modifier;
                if (!there.empty()) show(row.from);
            }
        }
    }
}

}  // namespace
}  // namespace kestrix::shell
