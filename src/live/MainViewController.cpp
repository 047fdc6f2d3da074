#include "live/MainViewController.h"

#include <QStringList>

#include <algorithm>
#include <any>
#include <charconv>
#include <utility>

#include "live/LiveLog.h"
#include "ui/ScreenNotifications.h"
#include "ui/SideBarContainer.h"

namespace kestrix::live {

Q_LOGGING_CATEGORY(lcLive, "kestrix.live", QtWarningMsg)

namespace {

using platform::Notification;
using platform::NotificationCenter;
using ui::SideBarContainer;

const QString kHistoryImage = QStringLiteral("orvo_home_button_history.png");
const QString kSaveImage = QStringLiteral("orvo_home_button_save.png");
const QString kLightningImage = QStringLiteral("orvo_home_lightning_%1%2.png");
constexpr int kLightningImages = 6;
constexpr int kStillLightning = 4;
constexpr std::chrono::milliseconds kLightningCycle{1000};

constexpr double kLeastRowHeight = 20;
constexpr double kMostTextHeight = 300;
constexpr double kTextColumnWidth = 60;
constexpr int kListFontSize = 8;
constexpr int kRowsBeforeScrolling = 3;

constexpr const char* kHeaders[] = {"Data Name", "Function", "Parameters", "Result", "Date Time", "Comments"};

// The toolbar's images in one state of the side bars; none: unchanged.
struct ToolbarImages {
    std::int32_t sideBarDirection;
    const char* left;
    const char* right;
};
constexpr ToolbarImages kToolbarImages[] = {
    {SideBarContainer::kClosed, "orvo_home_button_information.png", "orvo_home_button_history.png"},
    {SideBarContainer::kLeft, "orvo_home_left_back.png", nullptr},
    {SideBarContainer::kRight, nullptr, "orvo_home_button_back.png"},
};

QString lightningImage(QChar side, int number) {
    return kLightningImage.arg(side).arg(number);
}

QStringList lightningImages(QChar side) {
    QStringList images;
    for (int number = 1; number <= kLightningImages; ++number) images << lightningImage(side, number);
    return images;
}

void showStill(ui::ImageView& lightning, QChar side) {
    lightning.stopAnimating();
    lightning.setImage(lightningImage(side, kStillLightning));
}

}  // namespace

MainViewController::MainViewController(ui::Services services, MakeLink makeLink)
    : leftAnimaImg(*this, "leftAnimaImg", &services.scheduler),
      rightAnimaImg(*this, "rightAnimaImg", &services.scheduler),
      services_(std::move(services)),
      makeLink_(std::move(makeLink)),
      headers_{{{*this, "headerDataName"},
                {*this, "headerFunction"},
                {*this, "headerParameters"},
                {*this, "headerResult"},
                {*this, "headerDateTime"},
                {*this, "headerComments"}}} {}

MainViewController::~MainViewController() {
    if (blueConnect) blueConnect->allRelease();
}

void MainViewController::viewDidLoad() {
    med = std::make_unique<storage::MeasureData>();
    red = std::make_unique<storage::RecordData>();
    dao = std::make_unique<storage::ServiceDao>(services_.documents);
    buildToolbar();
    buildNotices();
    initAnimation();
    buildReadings();
    btnRecord.setImage(QStringLiteral("orvo_home_button_record.png"));
    btnRecord.setAccessibleName(QStringLiteral("Record"));
    btnRecord.setAction([this] { pressRecord(); });
    buildTitles();
    buildHeaders();
    initTableView();
    ClearRCDValue();
    initBluetooth();
    NotificationCenter& center = NotificationCenter::defaultCenter();
    clearings_ = center.addObserver(ui::NSClearTable, [this](const Notification&) { pressClearTable(); });
    slides_ = center.addObserver(ui::NSHomeBackBg, [this](const Notification&) { setHomeBackbg(); });
}

void MainViewController::buildToolbar() {
    Leftbtn.setImage(QLatin1String(kToolbarImages[0].left));
    Leftbtn.setAccessibleName(QStringLiteral("Menu"));
    Leftbtn.setAction([this] { showLeftSideBar(); });
    Rightbtn.setImage(kHistoryImage);
    Rightbtn.setAction([this] { showRightSideBar(); });
    nameRightButton();
}

void MainViewController::buildNotices() {
    btnHelp.setTitle(QStringLiteral("Help"));
    btnHelp.setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    btnHelp.setAction([this] { pressBCH(); });
    lblNoCon.setText(QStringLiteral("Not Connected"));
    lblNoCon.setTextColor(Qt::white);
    lblNoCon.setAlignment(Qt::AlignHCenter);
    lblNoCon.setShrinksToFit(true);
    blueImage.setImage(QStringLiteral("flash.png"));
    blueImage.setAccessibleName(QStringLiteral("Limit exceeded"));
    blueImage.setHidden(true);
}

void MainViewController::buildHeaders() {
    for (std::size_t i = 0; i < headers_.size(); ++i)
        setUILabelView(headers_[i], kHeaderStyle, QLatin1String(kHeaders[i]));
}

void MainViewController::initAnimation() {
    leftAnimaImg.setAnimation(lightningImages(u'l'), kLightningCycle, 0);
    rightAnimaImg.setAnimation(lightningImages(u'r'), kLightningCycle, 0);
}

void MainViewController::initTableView() {
    array.removeAll();
}

void MainViewController::initBluetooth() {
    blueConnect = makeLink_ ? makeLink_()
                            : std::make_unique<link::BluetoothConnect>(services_.accessories,
                                                                       services_.defaults, services_.wait);
    blueConnect->initBlue();
    blueConnect->setDelegate(this);
    linkStates_ = NotificationCenter::defaultCenter().addObserver(
        link::Orvoblueviewnotification,
        [this](const Notification& notification) { getblueView(notification); });
    viewStatus(services_.defaults.integerForKey(QLatin1String(link::kBlueState)));
}

void MainViewController::viewStatus(std::int32_t state) {
    qCInfo(lcLive, "状态:%d", state);
    services_.defaults.setInteger(QLatin1String(link::kBlueState), state);
    if (state == link::kConnected) {
        lblNoCon.setHidden(true);
        btnHelp.setHidden(true);
        leftAnimaImg.startAnimating();
        rightAnimaImg.startAnimating();
    } else if (state == link::kNotConnected) {
        lblNoCon.setHidden(false);
        btnHelp.setHidden(false);
        showStill(leftAnimaImg, u'l');
        showStill(rightAnimaImg, u'r');
        blueImage.setHidden(true);
        for (const std::int32_t group : {kReadings, kFirstReadingOnly, kRcdRows1To4, kRcdRows5And6})
            setHiddenLable(group, true);
        setTitleColor(0);
    }
    spokenReading_.refresh();
}

void MainViewController::getblueView(const Notification& notification) {
    const auto text = std::any_cast<std::string>(notification.object);
    std::from_chars(text.data(), text.data() + text.size(), bluestate);
    viewStatus(bluestate);
}

void MainViewController::pressRecord() {
    if (!strfunction) return;
    Rightbtn.setImage(kSaveImage);
    const std::string name = "S_" + std::to_string(array.count() + 1);
    array.append({name, *strfunction, parameters, results, getTimeNow(), " "},
                 getCellHeight(QString::fromStdString(parameters), QString::fromStdString(results)));
    nameRightButton();

    med->recordId = 0;
    med->dataName = name;
    med->function = *strfunction;
    med->parameters = parameters;
    med->result = results;
    med->dateTime = getTimeNow();
    med->comments = " ";
    med->recordName = "";
    dao->addMeasureForm(*med);
    if (array.count() >= kRowsBeforeScrolling) Q_EMIT array.scrollToLastRow();
}

void MainViewController::pressClearTable() {
    array.removeAll();
    nameRightButton();
}

std::string MainViewController::getTimeNow() const {
    return services_.timeText.text(services_.now());
}

double MainViewController::getCellHeight(const QString& parametersText, const QString& resultText) const {
    const QString& longer = parametersText.size() > resultText.size() ? parametersText : resultText;
    const double height = services_.textMeasure.wrappedHeight(
        longer, QStringLiteral("helvetica"), kListFontSize, kTextColumnWidth, kMostTextHeight);
    return std::max(height, kLeastRowHeight);
}

void MainViewController::showLeftSideBar() {
    showSideBar(SideBarContainer::kLeft);
}

void MainViewController::showRightSideBar() {
    if (array.count() > 0) return pressSaveData();
    showSideBar(SideBarContainer::kRight);
    NotificationCenter::defaultCenter().post({ui::NSRecordData});
}

void MainViewController::showSideBar(std::int32_t direction) {
    if (SideBarContainer* container = SideBarContainer::share())
        return container->showSideBarControllerWithDirection(direction);
    services_.notice.show(tr("Not available in this version"));
}

void MainViewController::pressSaveData() {
    services_.navigation.present(ui::ScreenId::SaveData, true);
}

void MainViewController::pressBCH() {
    services_.navigation.present(ui::ScreenId::BluetoothConnectionHelp, true);
}

void MainViewController::setHomeBackbg() {
    for (const ToolbarImages& images : kToolbarImages) {
        if (images.sideBarDirection != SideBarContainer::sideBarDirection) continue;
        if (images.left != nullptr) Leftbtn.setImage(QLatin1String(images.left));
        if (images.right != nullptr) Rightbtn.setImage(QLatin1String(images.right));
    }
}

// By what it does, which the number of rows decides, not its image.
void MainViewController::nameRightButton() {
    Rightbtn.setAccessibleName(array.count() > 0 ? QStringLiteral("Save test record")
                                                 : QStringLiteral("Saved test records"));
}

void MainViewController::didReceive3820Data(const protocol::MeterReading& record, bool success) {
    MeterDisplay::didReceive3820Data(record, success);
    spokenReading_.refresh();
}

QString MainViewController::displayInWords() const {
    if (!lblNoCon.hidden()) return lblNoCon.text();
    QStringList spoken;
    const auto say = [&spoken](const QString& words) {
        if (!words.trimmed().isEmpty()) spoken << words.trimmed();
    };
    if (const ui::Label* title = litTitle()) say(title->text());
    if (!D1Value.hidden()) say(D1Value.text() + u' ' + D1Unit.text());
    if (!D2Value.hidden()) say(D2Value.text() + u' ' + D2Unit.text());
    for (const RcdRow& row : rcdRows) {
        if (!row.Row.hidden() && !row.Value.hidden() && !row.Value.text().trimmed().isEmpty())
            say(row.Row.text().trimmed() + u' ' + row.Angle.text() + u' ' + row.Value.text() + u' ' +
                row.Unit.text());
    }
    if (!blueImage.hidden()) say(blueImage.accessibleName());
    return spoken.isEmpty() ? QStringLiteral("No reading") : spoken.join(QStringLiteral(", "));
}

}  // namespace kestrix::live
