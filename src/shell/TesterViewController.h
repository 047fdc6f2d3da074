#pragma once

#include <QString>

#include <string>
#include <vector>

#include "platform/NotificationCenter.h"
#include "shell/TesterPlaces.h"
#include "ui/FramedScreen.h"
#include "ui/Table.h"
#include "ui/TesterWords.h"
#include "ui/TextField.h"

namespace kestrix::shell {

// Where the tester is looked for, and how that goes: what can be seen, each with its state, an address to
// type, and a capture to open. A choice is looked for at once. When its tester answers, the screen says so
// and closes; otherwise it stays, and says what is wrong.
class TesterViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    TesterViewController(ui::ScreenId id, const ui::Services& services);

    void viewDidLoad() override;

    // Has the tester looked for there. An empty URI does nothing.
    void choose(const std::string& uri);
    // What stands in the row of the table.
    const TesterPlace& place(int row) const { return places_.at(static_cast<std::size_t>(row)); }
    // The tester at the address that was typed: on the network, or any URI.
    void pressConnect();
    // The capture that was typed.
    void pressOpen();

    ui::Label lblTesterName{*this, "lblTesterName"};
    ui::Label lblTesterState{*this, "lblTesterState"};  // wraps
    ui::Label lblAddress{*this, "lblAddress"};
    ui::Label lblCapture{*this, "lblCapture"};
    ui::TextField address{*this, "address"};
    ui::TextField capture{*this, "capture"};
    ui::Button btnConnect{*this, "btnConnect", ui::Button::Event::TouchUpInside};
    ui::Button btnOpen{*this, "btnOpen", ui::Button::Event::TouchUpInside};
    ui::ListModel rows{ui::Columns{
        {QStringLiteral("name"), tr("Tester"), 10, 124, 12, Qt::AlignLeft},
        {QStringLiteral("state"), tr("State"), 140, 168, 10, Qt::AlignLeft},
    }};
    ui::Table testers{*this, "testers", rows};

  private:
    void say(const QString& what);
    void showSearch();
    void showRows();
    void showRowsSoon();
    QString stateOf(const TesterPlace& place) const;

    TesterPlaces all_;
    std::vector<TesterPlace> places_;  // as the rows show them
    std::string chosen_;               // on this screen, and not connected yet
    bool rowsAreDue_ = false;
    platform::Scheduler::Timer rowsSoon_;
    platform::NotificationCenter::Subscription searches_;
    platform::NotificationCenter::Subscription comings_;
};

}  // namespace kestrix::shell
