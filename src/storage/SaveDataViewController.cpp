#include "storage/SaveDataViewController.h"

#include <algorithm>
#include <utility>

#include "platform/NotificationCenter.h"
#include "storage/Selection.h"
#include "storage/TestRecords.h"
#include "ui/Palette.h"
#include "ui/ScreenNotifications.h"
#include "ui/SideBarContainer.h"

namespace kestrix::storage {
namespace {

using platform::NotificationCenter;

constexpr int kCaptionSize = 13;
constexpr int kRowFontSize = 8;
constexpr double kTextColumnWidth = 60;
constexpr double kMostTextHeight = 300;
constexpr double kLeastRowHeight = 20;
constexpr qsizetype kDateLength = 10;

// What a field hints at; never a value.
constexpr std::array kHints{"project", "Zorvik", "Lakeford", "Brenn", "12"};

}  // namespace

void SaveDataViewController::viewDidLoad() {
    setClosable(false);
    dao = std::make_unique<ServiceDao>(services_.documents);
    buildCaptions();
    btnSave.setTitle(tr("Save"));
    btnSave.setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    btnSave.setAction([this] { pressSaveBack(); });
    btnEarlier.setAction([this] { pressEarlier(); });
    filed.setGrouped(true);
    filed.setEmptyText(tr("There is nothing to save: no measurement was stored since the last test record."));
    filed.setChoice([this](int row) { chooseRow(row); });
    if (dao->lastOutcome().done)
        readMeasurements();
    else
        readProblem_ = dao->lastOutcome().reason;  // it was waited for already
    if (!readProblem_.empty()) filed.setEmptyText(tr("The measurements could not be read."));
    if (!readProblem_.empty())
        services_.notice.show(
            tr("The measurements could not be read: %1").arg(QString::fromStdString(readProblem_)));
}

void SaveDataViewController::buildCaptions() {
    const std::array<std::pair<ui::Label*, QString>, 7> captions{{{&lblProjectName, tr("Project")},
                                                                  {&lblCompany, tr("Company")},
                                                                  {&lblAddress, tr("Address")},
                                                                  {&lblOperator, tr("Operator")},
                                                                  {&lblSerialNumber, tr("Serial number")},
                                                                  {&lblSample, tr("Samples")},
                                                                  {&lblStartTime, tr("Start time")}}};
    for (const auto& [label, text] : captions) label->setText(text);
    for (ui::Label* label : {&lblProjectName, &lblCompany, &lblAddress, &lblOperator, &lblSerialNumber,
                             &lblSample, &lblStartTime, &sample, &startTime}) {
        label->setFont(QStringLiteral("Arial"), kCaptionSize);
        label->setTextColor(ui::Palette::textOnDark);
        label->setShrinksToFit(true);
    }
    for (std::size_t field = 0; field < fields().size(); ++field)
        fields().at(field)->setAccessibleName(captions.at(field).second);
}

void SaveDataViewController::setKeyWord(ui::TextField& field) {
    field.setReturnAction([this, &field] { return textFieldShouldReturn(field); });
}

bool SaveDataViewController::textFieldShouldReturn(ui::TextField& field) {
    field.endEditing();
    const auto all = fields();
    const auto next = std::next(std::find(all.begin(), all.end(), &field));
    if (next != all.end())
        (*next)->takeKeyboard();
    else
        btnSave.takeKeyboard();
    return true;
}

std::string SaveDataViewController::getTimeNow() const {
    return services_.timeText.text(services_.now());
}

bool SaveDataViewController::isOfEarlierSession(const MeasureData& measure) {
    return measure.dataId <= lastDataIdOfEarlierSessions;
}

// Those of before stay when they cannot be read: to save fewer than there are would hide the others.
void SaveDataViewController::readMeasurements() {
    std::vector<MeasureData> found = dao->findMeasureForm(false);
    readProblem_ = dao->lastOutcome().reason;
    setMeasurements(readProblem_.empty() ? std::move(found) : measureArray);
}

std::vector<MeasureData> SaveDataViewController::taken() const {
    std::vector<MeasureData> taken;
    std::copy_if(measureArray.begin(), measureArray.end(), std::back_inserter(taken),
                 [this](const MeasureData& measure) { return !isLeftOut(measure); });
    return taken;
}

void SaveDataViewController::setMeasurements(std::vector<MeasureData> measurements) {
    measureArray = std::move(measurements);
    hasEarlier_ = std::any_of(measureArray.begin(), measureArray.end(), isOfEarlierSession);
    std::vector<ui::TableRow> shown;
    shown.reserve(measureArray.size());
    for (const MeasureData& measure : measureArray) shown.push_back(rowOf(measure));
    rows.setRows(std::move(shown));
    btnEarlier.setHidden(!hasEarlier_);
    showWhatIsFiled();
    if (number < 1) return;
    for (std::size_t field = 0; field < kHints.size(); ++field) {
        fields().at(field)->setPlaceholder(QLatin1String(kHints.at(field)));
        setKeyWord(*fields().at(field));
    }
}

// Labels and button, after a choice.
void SaveDataViewController::showWhatIsFiled() {
    const auto first = std::find_if(measureArray.begin(), measureArray.end(),
                                    [this](const MeasureData& measure) { return !isLeftOut(measure); });
    number = static_cast<std::int32_t>(
        std::count_if(first, measureArray.end(), [this](const MeasureData& m) { return !isLeftOut(m); }));
    if (number > 0) {
        startTimes = first->dateTime.empty() ? getTimeNow() : first->dateTime;
    } else {
        startTimes.clear();
    }
    sample.setText(measureArray.empty() ? QString() : QString::number(number));
    startTime.setText(QString::fromStdString(startTimes));
    btnEarlier.setTitle(takesAnyEarlier() ? tr("Leave out earlier sessions")
                                          : tr("Take in earlier sessions"));
}

bool SaveDataViewController::takesAnyEarlier() const {
    return std::any_of(measureArray.begin(), measureArray.end(), [this](const MeasureData& measure) {
        return isOfEarlierSession(measure) && !isLeftOut(measure);
    });
}

QString SaveDataViewController::groupOf(const MeasureData& measure) const {
    if (!hasEarlier_) return {};
    if (!isOfEarlierSession(measure)) return tr("This session");
    return tr("Earlier session, %1").arg(QString::fromStdString(measure.dateTime).left(kDateLength));
}

ui::TableRow SaveDataViewController::rowOf(const MeasureData& measure) const {
    ui::TableRow row;
    row.texts = measurementTexts(measure);
    const QString& longer = row.texts[2].size() > row.texts[3].size() ? row.texts[2] : row.texts[3];
    row.height = std::max(kLeastRowHeight, services_.textMeasure.wrappedHeight(
                                               longer, QStringLiteral("helvetica"), kRowFontSize,
                                               kTextColumnWidth, kMostTextHeight));
    row.group = groupOf(measure);
    row.struck = isLeftOut(measure);
    if (row.struck)
        row.mark = tr("Left out");
    else if (isOfEarlierSession(measure))
        row.mark = tr("Earlier");
    return row;
}

void SaveDataViewController::chooseRow(int row) {
    const MeasureData& measure = measureArray.at(static_cast<std::size_t>(row));
    if (!isOfEarlierSession(measure))
        return services_.notice.show(tr("Only measurements of earlier sessions can be left out"));
    if (leftOut_.erase(measure.dataId) == 0) leftOut_.insert(measure.dataId);
    rows.setRow(row, rowOf(measure));
    showWhatIsFiled();
}

void SaveDataViewController::pressEarlier() {
    const bool leavesOut = takesAnyEarlier();
    for (int row = 0; row < rows.count(); ++row) {
        const MeasureData& measure = measureArray[static_cast<std::size_t>(row)];
        if (!isOfEarlierSession(measure) || isLeftOut(measure) == leavesOut) continue;
        if (leavesOut)
            leftOut_.insert(measure.dataId);
        else
            leftOut_.erase(measure.dataId);
        rows.setRow(row, rowOf(measure));
    }
    showWhatIsFiled();
}

void SaveDataViewController::pressSaveBack() {
    if (saved_) return;  // it is on its way out
    ui::SideBarContainer::sideBarDirection = ui::SideBarContainer::kClosed;
    NotificationCenter::defaultCenter().post({ui::NSHomeBackBg});
    _projectName = projectName.text().toStdString();
    _company = company.text().toStdString();
    _address = address.text().toStdString();
    _operator = operators.text().toStdString();
    _serialNumber = serialNumber.text().toStdString();
    red = {};
    red.projectName = _projectName;
    red.company = _company;
    red.addres = _address;
    red.operators = _operator;
    red.serial = _serialNumber;
    red.samples = number;
    red = completed(std::move(red), number > 0 ? std::optional(startTimes) : std::nullopt);
    const Outcome outcome =
        readProblem_.empty() ? fileMeasurements(*dao, red, taken()) : Outcome{false, readProblem_, 0};
    if (!outcome.done) return tellFailure(outcome.reason);
    saved_ = true;
    NotificationCenter::defaultCenter().post({ui::NSClearTable});
    services_.navigation.dismiss(true);
}

// Nothing was written. What could not be filed may have gone elsewhere meanwhile: the next attempt is with
// what is there then. Who cannot save at all must get back to the live display: nothing is lost by that.
void SaveDataViewController::tellFailure(const std::string& reason) {
    // Whoever held the database was waited for once already.
    const std::string before = readProblem_;
    dao->setPatience(std::chrono::milliseconds(0));
    readMeasurements();
    dao->setPatience(ServiceDao::kPatience);
    // What was read once can be tried again as it is: filing checks each of them.
    if (!readProblem_.empty()) readProblem_ = before;
    services_.alerts.show(
        {.title = tr("Tips"),
         .text = tr("The test record was not saved: %1.\n\nIts measurements are kept, and none was filed.")
                     .arg(QString::fromStdString(reason)),
         .buttons = {tr("Save later"), tr("OK")},
         .cancelButton = 1,
         .answered =
             [this](int button) {
                 if (button == 0) services_.navigation.dismiss(true);
             }},
        *this);
}

}  // namespace kestrix::storage
