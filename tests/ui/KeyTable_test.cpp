#include "ui/KeyTable.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrix::ui {
namespace {

class KeyTableTest : public ::testing::Test {
  protected:
    KeyTableTest() {
        keys_.add(Qt::Key_R, [this] { acted_ += "R "; });
        keys_.add(
            Qt::Key_Up, [this] { acted_ += "Up "; }, KeyTable::Held::Repeats);
    }
    KeyTable keys_;
    std::string acted_;
};

TEST_F(KeyTableTest, AKeyDoesWhatItsRowSays) {
    EXPECT_TRUE(keys_.press(Qt::Key_R, Qt::NoModifier, false));
    EXPECT_TRUE(keys_.press(Qt::Key_Up, Qt::NoModifier, false));
    EXPECT_EQ(acted_, "R Up ");
}

TEST_F(KeyTableTest, AKeyThatIsNotInTheTableIsLeftToOthers) {
    EXPECT_FALSE(keys_.press(Qt::Key_Space, Qt::NoModifier, false));
    EXPECT_EQ(acted_, "");
}

TEST_F(KeyTableTest, WithAModifierAKeyIsLeftToOthers) {
    for (const int modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier, Qt::MetaModifier,
                               Qt::GroupSwitchModifier}) {
        EXPECT_FALSE(keys_.press(Qt::Key_R, modifier, false)) << modifier;
        EXPECT_FALSE(keys_.press(Qt::Key_R, modifier | Qt::KeypadModifier, false)) << modifier;
    }
    EXPECT_EQ(acted_, "");
}

TEST_F(KeyTableTest, TheNumberPadCounts) {
    EXPECT_TRUE(keys_.press(Qt::Key_Up, Qt::KeypadModifier, false));
    EXPECT_EQ(acted_, "Up ");
}

TEST_F(KeyTableTest, AHeldKeyActsOnceUnlessItsRowSaysOtherwise) {
    for (const bool repeated : {false, true, true}) {
        EXPECT_TRUE(keys_.press(Qt::Key_R, Qt::NoModifier, repeated));
        EXPECT_TRUE(keys_.press(Qt::Key_Up, Qt::NoModifier, repeated));
    }
    EXPECT_EQ(acted_, "R Up Up Up ");
}

TEST_F(KeyTableTest, AKeyThatIsAddedAgainGetsTheNewAction) {
    keys_.add(Qt::Key_R, [this] { acted_ += "again "; });
    keys_.press(Qt::Key_R, Qt::NoModifier, false);
    EXPECT_EQ(acted_, "again ");
}

TEST_F(KeyTableTest, AnActionMayChangeItsOwnKey) {
    keys_.add(Qt::Key_Z, [this] {
        const std::string before = "before ";
        keys_.add(Qt::Key_Z, [this] { acted_ += "after "; });
        acted_ += before;
    });
    keys_.press(Qt::Key_Z, Qt::NoModifier, false);
    keys_.press(Qt::Key_Z, Qt::NoModifier, false);
    EXPECT_EQ(acted_, "before after ");
}

}  // namespace
}  // namespace kestrix::ui
