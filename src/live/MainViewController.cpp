#include "live/MainViewController.h"

#include <QStringList>

#include <algorithm>
#include <charconv>
#include <utility>

#include "live/LiveLog.h"
#include "ui/Palette.h"
#include "ui/ScreenNotifications.h"
#include "ui/SideBarContainer.h"
#include "ui/TesterWords.h"

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
constexpr int kSimulatedFontSize = 11;
constexpr int kTesterFontSize = 17;
constexpr int kTesterStateFontSize = 11;
constexpr int kRowsBeforeScrolling = 3;

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
      makeLink_(std::move(makeLink)) {}

MainViewController::~MainViewController() {
    if (blueConnect) blueConnect->allRelease();
}

void MainViewController::viewDidLoad() {
    med = std::make_unique<storage::MeasureData>();
    red = std::make_unique<storage::RecordData>();
    dao = std::make_unique<storage::ServiceDao>(services_.documents);
    dao->setClock([this] { return moment(); });
    buildToolbar();
    buildNotices();
    buildKeys();
    initAnimation();
    buildReadings();
    btnRecord.setImage(QStringLiteral("orvo_home_button_record.png"));
    btnRecord.setAccessibleName(tr("Record"));
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
    Leftbtn.setAccessibleName(tr("Menu"));
    Leftbtn.setAction([this] { showLeftSideBar(); });
    Rightbtn.setImage(kHistoryImage);
    Rightbtn.setAction([this] { showRightSideBar(); });
    nameRightButton();
    lblTester.setFont(QStringLiteral("Arial"), kTesterFontSize);
    lblTesterState.setFont(QStringLiteral("Arial"), kTesterStateFontSize);
    for (ui::Label* label : {&lblTester, &lblTesterState}) {
        label->setTextColor(ui::Palette::textOnDark);
        label->setAlignment(Qt::AlignHCenter);
    }
    btnTester.setAction([this] { pressTester(); });
}

void MainViewController::buildNotices() {
    btnHelp.setTitle(tr("Help"));
    btnHelp.setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    btnHelp.setAction([this] { pressBCH(); });
    lblNoCon.setText(tr("Not Connected"));
    lblNoCon.setTextColor(ui::Palette::textOnDark);
    lblNoCon.setAlignment(Qt::AlignHCenter);
    lblNoCon.setShrinksToFit(true);
    lblWhyNotConnected.setFont(QStringLiteral("Arial"), kTesterStateFontSize);
    lblWhyNotConnected.setTextColor(ui::Palette::textOnDark);
    lblWhyNotConnected.setAlignment(Qt::AlignHCenter);
    lblSimulated.setText(tr("Simulated"));
    lblSimulated.setFont(QStringLiteral("Arial"), kSimulatedFontSize);
    lblSimulated.setTextColor(ui::Palette::textOnDark);
    lblSimulated.setAlignment(Qt::AlignHCenter);
    lblSimulated.setHidden(!services_.simulated);
    blueImage.setImage(QStringLiteral("flash.png"));
    blueImage.setAccessibleName(tr("Limit exceeded"));
    blueImage.setHidden(true);
}

void MainViewController::buildHeaders() {
    for (ui::Label* header : tableView.headers()) setUILabelView(*header, kHeaderStyle, header->text());
}

// Wherever the keyboard is on this screen.
void MainViewController::buildKeys() {
    keys_.add(Qt::Key_Space, [this] { btnRecord.press(); });
    keys_.add(Qt::Key_R, [this] { Q_EMIT readingAsked(); });
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
    searches_ = NotificationCenter::defaultCenter().addObserver(
        platform::kAccessorySearchDidChange, [this](const Notification&) { showTester(); });
    viewStatus(services_.defaults.integerForKey(QLatin1String(link::kBlueState)));
}

void MainViewController::viewStatus(std::int32_t state) {
    qCInfo(lcLive, "状态:%d", state);
    services_.defaults.setInteger(QLatin1String(link::kBlueState), state);
    if (!showLinkState(state)) return;
    const bool connected = display().link == display::LinkState::Connected;
    lblNoCon.setHidden(connected);
    btnHelp.setHidden(connected);
    showTester();
    if (connected) {
        leftAnimaImg.startAnimating();
        rightAnimaImg.startAnimating();
    } else {
        showStill(leftAnimaImg, u'l');
        showStill(rightAnimaImg, u'r');
        recordIsOfEarlierLink_ = true;
    }
    spokenReading_.refresh();
}

void MainViewController::getblueView(const Notification& notification) {
    bluestate = 0;  // what a text that is no number counts
    if (const auto* text = platform::objectOf<std::string>(notification))
        std::from_chars(text->data(), text->data() + text->size(), bluestate);
    viewStatus(bluestate);
}

void MainViewController::pressRecord() {
    if (!display::canBeRecorded(display())) return;
    Rightbtn.setImage(kSaveImage);
    const std::string name = "S_" + std::to_string(array.count() + 1);
    array.append({name, *strfunction(), parameters(), results(), getTimeNow(), " "},
                 getCellHeight(QString::fromStdString(parameters()), QString::fromStdString(results())));
    nameRightButton();

    med->recordId = 0;
    med->dataName = name;
    med->function = *strfunction();
    med->parameters = parameters();
    med->result = results();
    storedAt_ = services_.now();
    med->dateTime = services_.timeText.text(storedAt_);
    med->comments = " ";
    med->recordName = "";
    dao->addMeasureWithEvidence(*med, readingSource_.evidenceOf(display().measured, services_.simulated));
    if (array.count() >= kRowsBeforeScrolling) tableView.scrollToLastRow();
    sayWhatIsWrong(name);
}

// A row that was not stored, or that holds a reading of before, must not look like any other. The database
// knows no difference.
void MainViewController::sayWhatIsWrong(const std::string& name) {
    const QString row = QString::fromStdString(name);
    const QString time = QString::fromStdString(timeOfLatestRecord());
    if (!dao->lastOutcome().done)
        return markLatestRow(
            notStored(),
            tr("%1 was not stored: %2").arg(row, QString::fromStdString(dao->lastOutcome().reason)));
    const QString old = tr("Old reading");
    if (display().link == display::LinkState::NotConnected)
        markLatestRow(old, tr("%1: not connected, this reading is of %2").arg(row, time));
    else if (recordIsOfEarlierLink_)
        markLatestRow(old, tr("%1: no reading since the tester came, this one is of %2").arg(row, time));
    else if (display::recordsRowsOfEarlierLink(display()))
        markLatestRow(old, tr("%1: with trip times of before the tester came").arg(row));
}

void MainViewController::markLatestRow(const QString& mark, const QString& notice) {
    array.setMark(array.count() - 1, mark);
    services_.notice.show(notice, QStringLiteral("press"));
}

// The list goes because it was saved: a row of it that never was in the database is in no test record either.
void MainViewController::pressClearTable() {
    QStringList lost;
    for (int row = 0; row < array.count(); ++row) {
        if (array.at(row).mark == notStored()) lost << array.text(row, QStringLiteral("DataName"));
    }
    if (!lost.isEmpty())
        services_.notice.show(tr("Not in the test record, because never stored: %1").arg(lost.join(u", ")));
    array.removeAll();
    nameRightButton();
}

storage::Moment MainViewController::moment() const {
    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    return {.utc = duration_cast<milliseconds>(storedAt_.time_since_epoch()).count(),
            .utcOffset = services_.timeText.utcOffset(storedAt_),
            .sinceBoot = duration_cast<milliseconds>(services_.scheduler.now().time_since_epoch()).count()};
}

std::string MainViewController::getTimeNow() const {
    return services_.timeText.text(services_.now());
}

std::string MainViewController::timeOfLatestRecord() const {
    return strfunction() ? services_.timeText.text(latestRecord_) : std::string();
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

void MainViewController::pressTester() {
    services_.navigation.present(ui::ScreenId::Tester, true);
}

void MainViewController::showTester() {
    const ui::TesterWords words = ui::testerWords(services_.accessories);
    const bool connected = display().link == display::LinkState::Connected;
    lblTester.setText(words.name.isEmpty() ? QStringLiteral("Kestrix") : words.name);
    lblTesterState.setText(words.state);
    btnTester.setAccessibleName(tr("Tester: %1, %2").arg(lblTester.text(), lblTesterState.text()));
    lblWhyNotConnected.setHidden(connected);
    lblWhyNotConnected.setText(ui::whyNotConnected(words));
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
    Rightbtn.setAccessibleName(array.count() > 0 ? tr("Save test record") : tr("Saved test records"));
}

void MainViewController::didReceive3820Data(const protocol::MeterReading& record, bool success) {
    latestRecord_ = services_.now();
    recordIsOfEarlierLink_ = false;
    if (blueConnect) readingSource_.recordCame(blueConnect->measuredevice(), services_.accessories);
    MeterDisplay::didReceive3820Data(record, success);
    spokenReading_.refresh();
}

}  // namespace kestrix::live
