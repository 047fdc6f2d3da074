#pragma once

#include <memory>
#include <optional>

#include "platform/NotificationCenter.h"
#include "storage/FileIdentity.h"
#include "storage/RecordList.h"
#include "storage/ServiceDao.h"
#include "storage/TestRecords.h"
#include "ui/Screen.h"
#include "ui/Services.h"

namespace kestrix::storage {

// The list of saved test records in the right side bar. It lives as long as the application, and is filled
// anew whenever "NSRecordData" is posted. Choosing a record presents its history; one that is deleted goes
// with its measurements, and can be put back until the next one is deleted.
class RightSideBarViewController final : public kestrix::ui::Screen {
    Q_OBJECT
    Q_PROPERTY(int swipedRow READ swipedRow NOTIFY swipedRowChanged FINAL)
    Q_PROPERTY(int fadeDuration READ fadeDuration CONSTANT FINAL)

  public:
    RightSideBarViewController(ui::ScreenId id, const ui::Services& services);
    // Its end takes the offers to put back from the notice, which tells it.
    ~RightSideBarViewController() override { services_.notice.disconnect(this); }

    void viewDidLoad() override;
    void initTableView();
    // Fills the list anew from the database.
    void AddDataToTable();

    // Presents the history of the record in that row.
    void didSelectRow(int row);
    // Deletes the record in that row with its measurements. The row goes in any case; when the record stays,
    // a notice says so, and the row is there again when the list is filled anew.
    void commitDelete(int row);
    // Puts the record back that was deleted last.
    void pressPutBack();

    // The row that was swiped aside, so that its button for deleting is uncovered; -1: none.
    int swipedRow() const { return swipedRow_; }
    // For the view. A row that is not there: none.
    Q_INVOKABLE void swipe(int row);
    Q_INVOKABLE void pressDelete(int row) { commitDelete(row); }

    RecordList* dataList() { return &array; }

    ui::Label lblTitle{*this, "lblHistory"};
    ui::Label lblDeleted{*this, "lblDeleted"};  // hidden while nothing can be put back
    ui::Button btnPutBack{*this, "btnPutBack", ui::Button::Event::TouchUpInside};
    RecordList array;
    ui::Table myTableView{*this, "myTableView", array};

    std::unique_ptr<ServiceDao> dao;

  Q_SIGNALS:
    void swipedRowChanged();

  private:
    int fadeDuration() const { return static_cast<int>(services_.slideDuration.count()); }
    void setDeleted(std::optional<DeletedRecord> deleted);
    void showFoot();
    bool isAnotherNow(int row);

    ui::Services services_;
    int swipedRow_ = -1;
    std::optional<DeletedRecord> deleted_;
    FileIdentity deletedFrom_;
    platform::NotificationCenter::Subscription refills_;
};

}  // namespace kestrix::storage
