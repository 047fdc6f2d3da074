#pragma once

#include <memory>

#include "storage/ServiceDao.h"
#include "ui/FramedScreen.h"
#include "ui/Table.h"

namespace kestrix::history {

// One measurement, that which storage::selectedDataId names, as six rows of a title and a value. It is read
// once, when the screen appears; it only reads.
class HistoryCellViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    HistoryCellViewController(ui::ScreenId id, const ui::Services& services);

    void viewDidLoad() override;
    void viewDidAppear() override;
    void initTableView();
    // Fills the rows from the database.
    void getMeasureData();
    // Appends the row with the title of that number, 0 to 5, and the value.
    void setTableviewData(int number, const QString& value);
    // In points: the six rows share what the screen has below its toolbar.
    static int rowHeight();

    void pressHistoryCellBack();
    void pressBack() override { pressHistoryCellBack(); }

    ui::ListModel* dataList() { return &array; }

    ui::ListModel array;
    ui::Table tableView{*this, "tableView", array};

    std::unique_ptr<storage::ServiceDao> dao;
};

}  // namespace kestrix::history
