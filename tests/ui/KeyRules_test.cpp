#include "ui/KeyRules.h"

#include <gtest/gtest.h>

namespace kestrix::ui {
namespace {

constexpr int kForeign[] = {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier, Qt::MetaModifier,
                            Qt::ControlModifier | Qt::KeypadModifier};

TEST(KeyRules, SpaceAndBothEntersPressAButton) {
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        EXPECT_TRUE(KeyRules::presses(key, Qt::NoModifier)) << key;
        EXPECT_TRUE(KeyRules::presses(key, Qt::KeypadModifier)) << key;
        for (const int modifiers : kForeign) EXPECT_FALSE(KeyRules::presses(key, modifiers)) << modifiers;
        EXPECT_FALSE(KeyRules::leadsBack(key, Qt::NoModifier)) << key;
    }
}

TEST(KeyRules, EscapeAndBackLeadBack) {
    for (const int key : {Qt::Key_Escape, Qt::Key_Back}) {
        EXPECT_TRUE(KeyRules::leadsBack(key, Qt::NoModifier)) << key;
        EXPECT_TRUE(KeyRules::leadsBack(key, Qt::KeypadModifier)) << key;
        for (const int modifiers : kForeign) EXPECT_FALSE(KeyRules::leadsBack(key, modifiers)) << modifiers;
        EXPECT_FALSE(KeyRules::presses(key, Qt::NoModifier)) << key;
    }
}

}  // namespace
}  // namespace kestrix::ui
