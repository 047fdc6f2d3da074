#pragma once

#include <QStringList>

#include <cstdint>
#include <memory>

#include "shell/NavigationContainer.h"
#include "ui/Label.h"
#include "ui/Screen.h"
#include "ui/Services.h"

namespace kestrix::shell {

// Takes the screen that the menu made.
class LeftSideBarDelegate {
  public:
    virtual ~LeftSideBarDelegate() = default;
    virtual void leftSideBarSelectWithController(ui::Screen* screen) = 0;
};

// The left side bar: a short list that opens the information screens. It also makes the live screen, at its
// load, and owns it.
class LeftSideBarViewController final : public kestrix::ui::Screen {
    Q_OBJECT
    Q_PROPERTY(kestrix::ui::Label* titleLabel READ titleLabel CONSTANT FINAL)
    Q_PROPERTY(QStringList dataList READ dataList CONSTANT FINAL)

  public:
    LeftSideBarViewController(ui::ScreenId id, const ui::Services& services);
    ~LeftSideBarViewController() override;

    // Not owned. None: no content screen is made.
    void setDelegate(LeftSideBarDelegate* delegate) { delegate_ = delegate; }

    void viewDidLoad() override;

    // The live screen, its index one more than i, in a navigation container without a bar.
    std::unique_ptr<NavigationContainer> subConWithIndex(std::int32_t i);

    // The titles of the rows.
    const QStringList& dataList() const { return dataList_; }
    bool hasContent() const { return content_ != nullptr; }
    std::int32_t selectIdnex() const { return selectIdnex_; }
    // A row was chosen; one without a screen does nothing.
    Q_INVOKABLE void didSelectRow(int row);

    // Ask for a screen by notification.
    void pressHelp();
    void pressAbout();
    void pressMA();

    ui::Label menuTitle{*this, "menuTitle"};
    ui::Label* titleLabel() { return &menuTitle; }

  private:
    ui::Services services_;
    LeftSideBarDelegate* delegate_ = nullptr;
    QStringList dataList_;
    std::int32_t selectIdnex_ = 0;
    std::unique_ptr<NavigationContainer> content_;
};

}  // namespace kestrix::shell
