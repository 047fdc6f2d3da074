#include "storage/RightSideBarViewController.h"

#include <utility>

#include "storage/Selection.h"
#include "ui/Palette.h"
#include "ui/ScreenNotifications.h"

namespace kestrix::storage {
namespace {

constexpr int kTitleFontSize = 18;
constexpr int kFootFontSize = 12;
constexpr qsizetype kMostOfName = 30;  // characters, in a sentence

// How a sentence calls a record, whatever its name holds.
QString recordInWords(const RecordData& record) {
    QString name = QString::fromStdString(record.projectName).left(1000).simplified();
    if (name.isEmpty()) name = QString::fromStdString(record.startTime).left(kMostOfName).simplified();
    if (name.size() > kMostOfName) {
        const qsizetype end = name[kMostOfName].isLowSurrogate() ? kMostOfName - 1 : kMostOfName;
        name = name.left(end) + QChar(0x2026);
    }
    return QChar(0x2068) + name + QChar(0x2069);  // in its own direction of writing
}

}  // namespace

RightSideBarViewController::RightSideBarViewController(ui::ScreenId id, const ui::Services& services)
    : Screen(id), services_(services) {}

void RightSideBarViewController::viewDidLoad() {
    dao = std::make_unique<ServiceDao>(services_.documents);
    lblTitle.setText(tr("History"));
    lblTitle.setFont(QStringLiteral("Arial"), kTitleFontSize);
    lblTitle.setTextColor(ui::Palette::textOnDark);
    lblDeleted.setFont(QStringLiteral("helvetica"), kFootFontSize);
    lblDeleted.setTextColor(ui::Palette::textOnDark);
    btnPutBack.setTitle(tr("Put back"));
    btnPutBack.setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    btnPutBack.setAction([this] { pressPutBack(); });
    setDeleted(std::nullopt);
    connect(&services_.notice, &ui::Notice::shownChanged, this, &RightSideBarViewController::showFoot);
    initTableView();
    refills_ = platform::NotificationCenter::defaultCenter().addObserver(
        ui::NSRecordData, [this](const platform::Notification&) { AddDataToTable(); });
}

void RightSideBarViewController::initTableView() {
    myTableView.setChoice([this](int row) { didSelectRow(row); });
    myTableView.setDeletion(tr("Delete"), [this](int row) { commitDelete(row); });
}

void RightSideBarViewController::AddDataToTable() {
    swipe(-1);
    array.setRecords(dao->findRecordForm());
    if (dao->lastOutcome().done) {
        myTableView.setEmptyText(
            tr("No test record is saved yet.\n\nRecord measurements on the live screen, and save them there: "
               "their test record then stands here."));
        return;
    }
    const QString problem =
        tr("Not all test records could be read: %1").arg(QString::fromStdString(dao->lastOutcome().reason));
    myTableView.setEmptyText(problem);
    services_.notice.show(problem);
}

void RightSideBarViewController::didSelectRow(int row) {
    if (row == swipedRow_) return swipe(-1);  // the first touch beside the button only takes it away
    swipe(-1);
    selectedRecordId = array.recordId(row);
    services_.navigation.present(ui::ScreenId::History, true);
}

void RightSideBarViewController::commitDelete(int row) {
    if (row < 0 || row >= array.count()) return;
    swipe(-1);
    if (isAnotherNow(row)) {
        AddDataToTable();
        return services_.notice.show(tr("The test records are others by now; nothing was deleted"));
    }
    DeletedRecord deleted;
    const Outcome outcome = deleteRecord(*dao, array.recordId(row), deleted);
    if (outcome.done) {
        const std::int64_t id = deleted.record.recordId;
        // The offer to put the one of before back holds no longer.
        if (services_.notice.actionTitle() == btnPutBack.title()) services_.notice.clear();
        services_.notice.show(
            tr("%1 was deleted").arg(recordInWords(deleted.record)), tr("Put back"),
            [this, id] {
                if (deleted_ && deleted_->record.recordId == id) pressPutBack();
            },
            *this);
        setDeleted(std::move(deleted));
    } else {
        services_.notice.show(
            tr("The test record was not deleted: %1").arg(QString::fromStdString(outcome.reason)));
    }
    array.removeRecord(row);
}

// The file may have been replaced since the list was filled.
bool RightSideBarViewController::isAnotherNow(int row) {
    const std::vector<RecordData> found = dao->findRecordofId(array.recordId(row));
    return !found.empty() && !array.shows(row, found.front());
}

void RightSideBarViewController::pressPutBack() {
    if (!deleted_) return;
    if (databaseIdentity(services_.documents) != deletedFrom_)
        return services_.notice.show(tr("The test record was not put back: it is of another database"));
    const Outcome outcome = putBackRecord(*dao, *deleted_);
    if (!outcome.done)
        return services_.notice.show(
            tr("The test record was not put back: %1").arg(QString::fromStdString(outcome.reason)));
    swipe(-1);
    array.insertRecord(deleted_->record);
    services_.notice.show(tr("%1 was put back").arg(recordInWords(deleted_->record)));
    setDeleted(std::nullopt);
}

void RightSideBarViewController::setDeleted(std::optional<DeletedRecord> deleted) {
    deleted_ = std::move(deleted);
    deletedFrom_ = databaseIdentity(services_.documents);
    lblDeleted.setText(deleted_ ? tr("Deleted: %1").arg(recordInWords(deleted_->record)) : QString());
    showFoot();
}

// Not while a notice offers the same.
void RightSideBarViewController::showFoot() {
    const bool shown = deleted_ && services_.notice.actionTitle() != btnPutBack.title();
    lblDeleted.setHidden(!shown);
    btnPutBack.setHidden(!shown);
}

void RightSideBarViewController::swipe(int row) {
    const int swiped = row >= 0 && row < array.count() ? row : -1;
    if (swiped == swipedRow_) return;
    swipedRow_ = swiped;
    Q_EMIT swipedRowChanged();
}

}  // namespace kestrix::storage
