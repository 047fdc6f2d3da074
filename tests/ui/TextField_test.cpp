#include "ui/TextField.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

class TextFieldTest : public ::testing::Test {
  protected:
    TestScreen screen_;
    std::unique_ptr<TextField> made_ = std::make_unique<TextField>(screen_, "project");
    TextField& field_ = *made_;
    SignalCount texts_{field_, &TextField::textChanged};
    SignalCount ends_{field_, &TextField::editingEnded};
};

TEST_F(TextFieldTest, WhatIsTypedIsThereAtOnceAndNotToldBack) {
    field_.edit(QStringLiteral("Ann"));
    EXPECT_EQ(field_.text(), QStringLiteral("Ann"));
    tellDisplay();
    EXPECT_EQ(texts_(), 0);
}

TEST_F(TextFieldTest, WhatTheScreenSetsIsToldOnce) {
    field_.setText(QStringLiteral("12"));
    field_.setText(QStringLiteral("13"));
    tellDisplay();
    EXPECT_EQ(texts_(), 1);
    EXPECT_EQ(field_.text(), QStringLiteral("13"));
}

TEST_F(TextFieldTest, KeepsAnyTextAsItIs) {
    const QString longText(100'000, u'x');
    for (const QString& text : {QStringLiteral("O'Neill \"&\" <b>"), QStringLiteral("⚡👷🏽 naïve"),
                                QStringLiteral("שלום عالم"), longText}) {
        field_.edit(text);
        EXPECT_EQ(field_.text(), text);
    }
}

TEST_F(TextFieldTest, APlaceholderIsNeverTheText) {
    const SignalCount told(field_, &TextField::placeholderChanged);
    field_.setPlaceholder(QStringLiteral("project"));
    tellDisplay();
    EXPECT_EQ(told(), 1);
    EXPECT_EQ(field_.text(), QString());
}

TEST_F(TextFieldTest, ReturnEndsEditingUnlessItsActionSaysOtherwise) {
    field_.setEditing(true);
    field_.pressReturn();
    EXPECT_EQ(ends_(), 1);
    int returns = 0;
    field_.setReturnAction([&] {
        ++returns;
        return false;
    });
    field_.pressReturn();
    EXPECT_EQ(ends_(), 1);
    field_.setReturnAction([&] {
        ++returns;
        return true;
    });
    field_.pressReturn();
    EXPECT_EQ(ends_(), 2);
    EXPECT_EQ(returns, 2);
}

TEST_F(TextFieldTest, EditingEndsOnlyWhereItBegan) {
    field_.endEditing();
    EXPECT_EQ(ends_(), 0);
}

TEST_F(TextFieldTest, AnActionMayDestroyTheField) {
    field_.setReturnAction([this] {
        made_.reset();
        return true;
    });
    field_.setEditing(true);
    field_.pressReturn();
    EXPECT_EQ(made_, nullptr);
}

TEST_F(TextFieldTest, EditsAreHeardOnceEach) {
    int edits = 0;
    field_.setEditAction([&] { ++edits; });
    field_.edit(QStringLiteral("a"));
    field_.edit(QStringLiteral("a"));
    field_.setText(QStringLiteral("b"));
    EXPECT_EQ(edits, 1);
}

TEST_F(TextFieldTest, ItsScreenFindsItByItsName) {
    EXPECT_EQ(screen_.textField(QStringLiteral("project")), &field_);
}

}  // namespace
}  // namespace kestrix::ui
