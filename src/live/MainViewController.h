#pragma once

#include <QString>

#include <functional>
#include <memory>

#include "link/BluetoothConnect.h"
#include "live/MeasurementEvidence.h"
#include "live/MeterDisplay.h"
#include "live/SessionList.h"
#include "live/SpokenReading.h"
#include "platform/NotificationCenter.h"
#include "storage/MeasureData.h"
#include "storage/RecordData.h"
#include "storage/ServiceDao.h"
#include "ui/Button.h"
#include "ui/KeyTable.h"
#include "ui/Services.h"
#include "ui/Table.h"

namespace kestrix::live {

// The home screen: the tester's display, live, and the list of the measurements of this session. Each press
// of the record button adds one row to the list and one to the database.
class MainViewController final : public kestrix::live::MeterDisplay {
    Q_OBJECT
    Q_PROPERTY(kestrix::live::SessionList* dataList READ dataList CONSTANT FINAL)
    Q_PROPERTY(kestrix::live::SpokenReading* spokenReading READ spokenReading CONSTANT FINAL)
    KESTRIX_CONTROL(Label, lblNoCon)
    KESTRIX_CONTROL(Label, lblSimulated)
    KESTRIX_CONTROL(Label, lblTester)
    KESTRIX_CONTROL(Label, lblTesterState)
    KESTRIX_CONTROL(Label, lblWhyNotConnected)
    KESTRIX_CONTROL(Button, btnTester)
    KESTRIX_CONTROL(Button, btnHelp)
    KESTRIX_CONTROL(Button, btnRecord)
    KESTRIX_CONTROL(Button, Leftbtn)
    KESTRIX_CONTROL(Button, Rightbtn)
    KESTRIX_CONTROL(ImageView, leftAnimaImg)
    KESTRIX_CONTROL(ImageView, rightAnimaImg)
    KESTRIX_CONTROL(Table, tableView)
    KESTRIX_CONTROL_AT(KeyTable, keys, keys_)

  public:
    // makeLink: makes the link, which the screen starts and becomes the delegate of; none: one over the
    // services' accessories.
    using MakeLink = std::function<std::unique_ptr<link::BluetoothConnect>()>;
    explicit MainViewController(ui::Services services, MakeLink makeLink = nullptr);
    ~MainViewController() override;

    // Builds the screen and starts the link.
    void viewDidLoad() override;
    void initAnimation();
    void initTableView();
    void initBluetooth();

    // state: 0 not connected, 1 connected; any other is stored and changes nothing here.
    void viewStatus(std::int32_t state);
    void getblueView(const platform::Notification& notification);

    // Takes the latest record's texts into the list and the database; the database row is durable when this
    // returns. Nothing before the first record, and nothing while the latest record was not understood. A
    // notice says when the row was not stored, which is marked then, and when it holds a reading of before
    // because no tester is connected.
    void pressRecord();
    void pressClearTable();
    // Local time, as ui::kTimePattern says.
    std::string getTimeNow() const;
    // The time of the latest record, in the same form; empty before the first one.
    std::string timeOfLatestRecord() const;
    // The height of a row of the list, in points.
    double getCellHeight(const QString& parametersText, const QString& resultText) const;

    void showLeftSideBar();
    void showRightSideBar();
    void pressSaveData();
    void pressBCH();
    // Presents the screen on which the tester is chosen.
    void pressTester();
    void setHomeBackbg();

    void didReceive3820Data(const protocol::MeterReading& record, bool success) override;

    // The rows of this session; what the table shows. Both names stand for one list.
    SessionList array;
    SessionList* dataList() { return &array; }

    // The table that shows them, under both of its names.
    ui::Table tableView{*this, "tableView", array};
    ui::Table& myTableView = tableView;

    SpokenReading* spokenReading() { return &spokenReading_; }

    std::int32_t index = 0;      // of the screen in the menu that made it, counted from 1
    std::int32_t bluestate = 0;  // the last published link state

    ui::Label lblNoCon{*this, "lblNoCon"};
    ui::Label lblSimulated{*this, "lblSimulated"};  // while no tester measures the readings
    // The toolbar's title: the tester's name, or where it is looked for, and its state. Both are a button.
    ui::Label lblTester{*this, "lblTester"};
    ui::Label lblTesterState{*this, "lblTesterState"};
    ui::Button btnTester{*this, "btnTester", ui::Button::Event::TouchDown};
    // Beneath "Not Connected": which tester is looked for, why it is not there, and what to do about it.
    ui::Label lblWhyNotConnected{*this, "lblWhyNotConnected"};
    ui::Button btnHelp{*this, "btnHelp", ui::Button::Event::TouchDown};
    ui::Button btnRecord{*this, "btnRecord", ui::Button::Event::TouchDown};
    ui::Button Leftbtn{*this, "Leftbtn", ui::Button::Event::TouchDown};
    ui::Button Rightbtn{*this, "Rightbtn", ui::Button::Event::TouchDown};
    ui::ImageView leftAnimaImg;
    ui::ImageView rightAnimaImg;

    // What `viewDidLoad` creates.
    std::unique_ptr<storage::MeasureData> med;
    std::unique_ptr<storage::RecordData> red;
    std::unique_ptr<storage::ServiceDao> dao;
    std::unique_ptr<link::BluetoothConnect> blueConnect;

  Q_SIGNALS:
    // The view brings the keyboard to the reading, so that a screen reader says it.
    void readingAsked();

  private:
    void buildKeys();
    void buildNotices();
    void buildToolbar();
    void buildHeaders();
    void nameRightButton();
    void showTester();
    // After a press of the record button that made the row `name`.
    void sayWhatIsWrong(const std::string& name);
    // Of the latest press, as its row tells the time.
    storage::Moment moment() const;
    static QString notStored() { return tr("Not stored"); }
    void markLatestRow(const QString& mark, const QString& notice);
    // Without a container the user is told.
    void showSideBar(std::int32_t direction);

    ui::Services services_;
    MakeLink makeLink_;
    std::chrono::system_clock::time_point latestRecord_;  // when it came
    bool recordIsOfEarlierLink_ = false;                  // the link went since, and may be back
    ReadingSource readingSource_;
    std::chrono::system_clock::time_point storedAt_;  // of the latest press
    SpokenReading spokenReading_{*this, "spokenReading", [this] { return inWords(display()); }};
    ui::KeyTable keys_;  // of the whole screen
    platform::NotificationCenter::Subscription linkStates_;
    platform::NotificationCenter::Subscription searches_;
    platform::NotificationCenter::Subscription clearings_;
    platform::NotificationCenter::Subscription slides_;
};

}  // namespace kestrix::live
