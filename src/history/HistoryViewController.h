#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "storage/MeasureData.h"
#include "storage/ServiceDao.h"
#include "ui/FramedScreen.h"
#include "ui/MBButtonMenuViewController.h"
#include "ui/Table.h"

namespace kestrix::history {

// The measurements of the test record that storage::selectedRecordId names, and its export menu. They are
// read once, when the screen appears; it only reads. Choosing one presents the screen of that measurement.
class HistoryViewController final : public kestrix::ui::FramedScreen,
                                    public ui::MBButtonMenuViewControllerDelegate {
    Q_OBJECT
    Q_PROPERTY(kestrix::ui::MBButtonMenuViewController* menu READ exportMenu NOTIFY menuMade FINAL)

  public:
    HistoryViewController(ui::ScreenId id, const ui::Services& services);

    void viewDidLoad() override;
    void viewDidAppear() override;
    // The columns' titles.
    void initTableView();
    // Fills the table anew from the database.
    void getMeasureData();
    // In points: of the longer one of both texts (by its characters), as the cells wrap it.
    double getCellHeight(const QString& parametersText, const QString& resultText) const;
    // style: 0 to 3, which choose ground and font.
    void setUILabelView(ui::Label& label, int style, const QString& text) const;
    // Presents the measurement of that row.
    void didSelectRow(int row);

    void pressHistoryBack();
    void pressBack() override { pressHistoryBack(); }
    void pressShare();
    // The export menu, over this screen: made at the first time, and kept.
    void showMenu();
    void buttonMenuViewController(ui::MBButtonMenuViewController& shown,
                                  std::uint64_t buttonTappedAtIndex) override;
    void buttonMenuViewControllerDidCancel(ui::MBButtonMenuViewController& shown) override;

    ui::ListModel* dataList() { return &array; }
    ui::MBButtonMenuViewController* exportMenu() const { return menu.get(); }

    ui::Label& historyTitle = screenTitle;  // the record's project name
    ui::Button btnShare{*this, "btnShare", ui::Button::Event::TouchDown};
    ui::ListModel array;
    ui::Table tableView{*this, "tableView", array};

    std::unique_ptr<ui::MBButtonMenuViewController> menu;  // none before it was asked for

    std::unique_ptr<storage::ServiceDao> dao;
    std::vector<storage::MeasureData> arrays;  // as the database has them; a row of the table each
    std::string recordNames;                   // the project name in the first of them

  Q_SIGNALS:
    void menuMade();

  private:
    void showWhatIsMissing();
};

}  // namespace kestrix::history
