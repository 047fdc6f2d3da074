#pragma once

#include <QUrl>

#include <memory>
#include <string>
#include <utility>

#include "ui/ScreenStack.h"

namespace kestrix::shell {

// A presented screen with two buttons that says what happens to it.
class TestScreen final : public ui::Screen {
  public:
    // What happened, one word each.
    using Log = std::shared_ptr<std::string>;

    TestScreen(ui::ScreenId id, Log log) : Screen(id), log_(std::move(log)) {}
    ~TestScreen() override { *log_ += "destroyed "; }

    // From now on it is what is presented under this identity.
    static void registerAs(ui::ScreenId id, ui::ScreenStack& screens, const Log& log) {
        screens.registerScreen(
            id, [id, log] { return std::make_unique<TestScreen>(id, log); },
            QUrl(QStringLiteral("qrc:/tests/TestScreen.qml")));
    }

    void viewDidLoad() override {
        lblTitle.setText(QStringLiteral("Test screen"));
        lblTitle.setTextColor(Qt::white);
        btnFirst.setTitle(QStringLiteral("First"));
        btnFirst.setAction([this] { *log_ += "first "; });
        btnSecond.setTitle(QStringLiteral("Second"));
        btnSecond.setAction([this] { *log_ += "second "; });
    }
    void viewWillAppear() override { *log_ += "willAppear "; }
    void viewDidAppear() override { *log_ += "didAppear "; }
    void viewWillDisappear() override { *log_ += "willDisappear "; }

  private:
    Log log_;
    ui::Label lblTitle{*this, "lblTitle"};
    ui::Button btnFirst{*this, "btnFirst", ui::Button::Event::TouchDown};
    ui::Button btnSecond{*this, "btnSecond", ui::Button::Event::TouchUpInside};
};

}  // namespace kestrix::shell
