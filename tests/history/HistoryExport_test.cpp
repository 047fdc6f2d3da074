// What the export menu of the history screen does.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <functional>

#include "history/HistoryViewController.h"
#include "history/MailComposeViewController.h"
#include "storage/TestRecords.h"
#include "tests/history/HistoryFixture.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::history {
namespace {

using platform::MailResult;
using Asked = std::vector<std::string>;

const QString kNoNetwork = QStringLiteral("Failed to send mail, connect to the network！");
const QString kSaved = QStringLiteral("Save the file success");
const QString kText = QStringLiteral("20240603000000.csv");
const QString kReport = QStringLiteral("20240603000000.pdf");

class HistoryExport : public HistoryFixture {
  protected:
    HistoryExport() { HistoryViewController::dismissAfterAlert = false; }
    ~HistoryExport() override {
        HistoryViewController::dismissAfterAlert = false;
        mailToCompose.reset();
    }

    HistoryViewController& open(const std::string& project = "Plant A") {
        const std::int64_t record = addRecord(project);
        addMeasure(record, project, measureNamed("S_1"));
        storage::selectedRecordId = record;
        screen_ = std::make_unique<HistoryViewController>(ui::ScreenId::History, surroundings_.services());
        screen_->loadView();
        screen_->viewDidAppear();
        return *screen_;
    }
    void choose(const char* title) {
        screen_->btnShare.press();
        screen_->exportMenu()->buttonTapped(QLatin1String(title));
        screen_->exportMenu()->movementDone();
    }
    // The composer says how the mail ended.
    void endMail(MailResult result, const std::string& error = {}) {
        ASSERT_TRUE(mailToCompose.has_value());
        MailComposeDelegate& delegate = *mailToCompose->delegate;
        MailComposeViewController composer(ui::ScreenId::MailCompose, surroundings_.services());
        delegate.mailComposeController(composer, result, error);
    }
    QStringList files() const {
        return QDir(surroundings_.folder.path()).entryList({"*.csv", "*.pdf", "*.eml"}, QDir::Files);
    }
    QString alert() const { return surroundings_.alerts.text(); }
    void confirm() { surroundings_.alerts.answer(0); }
    QString textOf(const QString& name) const {
        QFile file(surroundings_.folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QStringDecoder(QStringDecoder::Utf16)(file.readAll());
    }

    std::unique_ptr<HistoryViewController> screen_;
};

TEST_F(HistoryExport, ToCsvWritesTheTextAndSaysSo) {
    open();
    choose("Export to CSV");
    EXPECT_EQ(files(), QStringList{kText});
    EXPECT_TRUE(textOf(kText).contains(QStringLiteral("Plant A     ")));
    EXPECT_TRUE(textOf(kText).contains(QStringLiteral("186.4MΩ,524V")));
    EXPECT_EQ(screen_->timeStr, "20240603000000");
    EXPECT_EQ(screen_->deletefile, surroundings_.documents.filePath(kText));
    EXPECT_EQ(surroundings_.alerts.title(), QStringLiteral("Tips"));
    EXPECT_EQ(alert(), kSaved);
    EXPECT_EQ(surroundings_.alerts.buttons(), QStringList{QStringLiteral("OK")});
    EXPECT_EQ(surroundings_.notice.text(),
              QStringLiteral("Saved as ") + surroundings_.documents.filePath(kText));
    confirm();
    EXPECT_TRUE(surroundings_.asked.empty()) << "the screen stays";
    EXPECT_EQ(files(), QStringList{kText}) << "and so does the file";
}

TEST_F(HistoryExport, ToPdfWritesTheReportAndSaysSo) {
    open();
    choose("Export to PDF");
    EXPECT_EQ(files(), QStringList{kReport});
    EXPECT_EQ(alert(), kSaved);
    confirm();
    EXPECT_TRUE(surroundings_.asked.empty());
}

TEST_F(HistoryExport, TwoInTheSameSecondHaveOneName) {
    open();
    choose("Export to CSV");
    confirm();
    choose("Export to CSV");
    confirm();
    EXPECT_EQ(files(), QStringList{kText});
    surroundings_.now += std::chrono::seconds(1);
    choose("Export to CSV");
    EXPECT_EQ(files(), (QStringList{kText, QStringLiteral("20240603000001.csv")}));
}

TEST_F(HistoryExport, IsOfWhatTheScreenReadNotOfWhatCameSince) {
    const HistoryViewController& screen = open();
    addMeasure(storage::selectedRecordId, "Plant A", measureNamed("S_2"));
    choose("Export to CSV");
    EXPECT_FALSE(textOf(kText).contains(QStringLiteral("S_2")));
    EXPECT_EQ(screen.arrays.size(), 1U);
}

TEST_F(HistoryExport, OfARecordWithEmptyFieldsSaysDashesAndABlankName) {
    storage::RecordData typed;
    typed.samples = 1;
    dao_.addRecordForm(storage::completed(typed, std::string("2026-03-04 05:06:07")));
    storage::selectedRecordId = dao_.lastOutcome().identity;
    screen_ = std::make_unique<HistoryViewController>(ui::ScreenId::History, surroundings_.services());
    screen_->loadView();
    screen_->viewDidAppear();
    choose("Export to CSV");
    EXPECT_TRUE(textOf(kText).contains(
        QStringLiteral("\n      ---     ---     ---     2026-03-04 05:06:07     ---     1\n")))
        << textOf(kText).toStdString();
}

TEST_F(HistoryExport, AMeasurementWithAPlaceholderGetsTheTimeInItsPlace) {
    const std::int64_t record = addRecord("Plant A");
    addMeasure(record, "Plant A", measureNamed("S_1", "at %@", "100%%"));
    storage::selectedRecordId = record;
    screen_ = std::make_unique<HistoryViewController>(ui::ScreenId::History, surroundings_.services());
    screen_->loadView();
    screen_->viewDidAppear();
    choose("Export to CSV");
    EXPECT_TRUE(textOf(kText).contains(QStringLiteral("at 20240603000000     100%     ")));
}

TEST_F(HistoryExport, ThatCannotBeWrittenStillSaysSuccessAndTheLogSaysWhyNot) {
    open();
    surroundings_.folder.remove();
    testing::expectWarning("the test record was not exported:");
    choose("Export to CSV");
    EXPECT_EQ(alert(), kSaved);
    EXPECT_FALSE(surroundings_.notice.isShown()) << "but no place is told";
    confirm();
    testing::expectWarning("the test record was not exported:");
    choose("Export to PDF");
    EXPECT_EQ(alert(), kSaved);
}

TEST_F(HistoryExport, OfWhatCouldNotBeReadWholeIsRefused) {
    open();
    dao_.execSql("DROP TABLE measurefrom");
    screen_->getMeasureData();
    for (const char* title : {"Email", "Export to CSV", "Export to PDF"}) {
        choose(title);
        EXPECT_TRUE(alert().startsWith(QStringLiteral("Not all measurements could be read: "))) << title;
        confirm();
    }
    EXPECT_EQ(files(), QStringList());
    EXPECT_TRUE(surroundings_.asked.empty());
}

TEST_F(HistoryExport, CancelDoesNothingMore) {
    open();
    choose("Cancel");
    EXPECT_FALSE(surroundings_.alerts.isShown());
    EXPECT_EQ(files(), QStringList());
}

TEST_F(HistoryExport, EmailPresentsTheComposerWithTheText) {
    open();
    choose("Email");
    EXPECT_EQ(surroundings_.asked, Asked{"present MailCompose animated"});
    ASSERT_TRUE(mailToCompose.has_value());
    EXPECT_EQ(mailToCompose->recipient, "-");
    EXPECT_EQ(mailToCompose->subject, "Plant A");
    EXPECT_EQ(mailToCompose->htmlBody, "<H5>Kestrix Safety Tester</H5>");
    ASSERT_TRUE(mailToCompose->attachment.has_value());
    EXPECT_EQ(mailToCompose->attachment->name, "20240603000000.csv");
    EXPECT_EQ(mailToCompose->attachment->mediaType, "csv");
    QFile file(surroundings_.folder.filePath(kText));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(mailToCompose->attachment->content, file.readAll().toStdString());
    EXPECT_FALSE(surroundings_.alerts.isShown());
}

TEST_F(HistoryExport, AMailWhoseTextCouldNotBeWrittenHasAnEmptyAttachment) {
    open();
    surroundings_.folder.remove();
    testing::expectWarning("the test record was not exported:");
    choose("Email");
    ASSERT_TRUE(mailToCompose.has_value());
    EXPECT_EQ(mailToCompose->attachment->content, "");
}

TEST_F(HistoryExport, AFileThatIsNoneOfOursIsNeitherAttachedNorDeleted) {
    QTemporaryDir elsewhere;
    QFile precious(elsewhere.filePath(QStringLiteral("precious")));
    ASSERT_TRUE(precious.open(QIODevice::WriteOnly));
    precious.write("precious");
    precious.close();
    const QString place = surroundings_.folder.filePath(kText);
    const std::pair<const char*, std::function<bool()>> kinds[] = {
        {"link", [&] { return precious.link(place); }},
        {"second name",
         [&] {
             return ::link(QFile::encodeName(precious.fileName()).constData(),
                           QFile::encodeName(place).constData()) == 0;
         }},
        {"pipe", [&] { return ::mkfifo(QFile::encodeName(place).constData(), 0600) == 0; }}};
    open();
    for (const auto& [kind, make] : kinds) {
        ASSERT_TRUE(make()) << kind;
        testing::expectWarning("the test record was not exported:");
        choose("Email");
        ASSERT_TRUE(mailToCompose.has_value()) << kind;
        EXPECT_EQ(mailToCompose->attachment->content, "") << kind;
        endMail(MailResult::Cancelled);
        confirm();
        struct stat state {};
        EXPECT_EQ(::lstat(QFile::encodeName(place).constData(), &state), 0) << kind << " is still there";
        QFile::remove(place);
    }
}

TEST_F(HistoryExport, WhereNoMailCanBeComposedNothingIsShownAndTheFileStays) {
    surroundings_.missing = ui::ScreenId::MailCompose;
    open();
    choose("Email");
    EXPECT_TRUE(surroundings_.asked.empty());
    EXPECT_FALSE(surroundings_.alerts.isShown());
    screen_.reset();
    EXPECT_EQ(files(), QStringList{kText});
}

TEST_F(HistoryExport, TheReportsHeightIsThatOfItsRows) {
    const std::int64_t record = addRecord("Plant A");
    storage::selectedRecordId = record;
    screen_ = std::make_unique<HistoryViewController>(ui::ScreenId::History, surroundings_.services());
    screen_->loadView();
    screen_->viewDidAppear();
    EXPECT_EQ(screen_->getPDFHeight(), 120);
    addMeasure(record, "Plant A", measureNamed("S_1"));
    addMeasure(record, "Plant A", measureNamed("S_2", std::string(200, 'x')));
    screen_->getMeasureData();
    EXPECT_EQ(screen_->getPDFHeight(), 120 + 20 + 30);
}

TEST_F(HistoryExport, WithoutANetworkEmailSaysSoAndStops) {
    open();
    surroundings_.network.reachable = false;
    choose("Email");
    EXPECT_EQ(alert(), kNoNetwork);
    EXPECT_EQ(files(), QStringList());
    confirm();
    EXPECT_TRUE(surroundings_.asked.empty());
}

TEST_F(HistoryExport, AfterEmailOnceALaterNoNetworkAlertAlsoClosesTheScreen) {
    open();
    choose("Email");
    endMail(MailResult::Cancelled);
    confirm();
    surroundings_.asked.clear();
    surroundings_.network.reachable = false;
    choose("Email");
    EXPECT_EQ(alert(), kNoNetwork);
    confirm();
    EXPECT_EQ(surroundings_.asked, Asked{"dismiss animated"});
}

TEST_F(HistoryExport, AFileExportClearsTheFlagAgain) {
    open();
    choose("Email");
    endMail(MailResult::Sent);
    confirm();
    surroundings_.asked.clear();
    choose("Export to CSV");
    confirm();
    EXPECT_TRUE(surroundings_.asked.empty());
    surroundings_.network.reachable = false;
    choose("Email");
    confirm();
    EXPECT_TRUE(surroundings_.asked.empty()) << "the alert of no network leaves it as it was";
}

struct MailEnd {
    const char* name;
    MailResult result;
    const char* message;
    bool closesComposerAtOnce;
};

class HistoryMailEnd : public HistoryExport, public ::testing::WithParamInterface<MailEnd> {};

TEST_P(HistoryMailEnd, HasItsAlertAndItsWayOutAndDeletesTheFile) {
    open();
    choose("Email");
    ASSERT_EQ(files(), QStringList{kText});
    surroundings_.asked.clear();
    endMail(GetParam().result, GetParam().result == MailResult::Failed ? "nobody answers" : "");
    EXPECT_EQ(files(), QStringList());
    EXPECT_EQ(alert(), QLatin1String(GetParam().message));
    EXPECT_EQ(surroundings_.asked, GetParam().closesComposerAtOnce ? Asked{"dismiss animated"} : Asked{});
    surroundings_.asked.clear();
    confirm();
    EXPECT_EQ(surroundings_.asked, Asked{"dismiss animated"})
        << "the composer, or behind it the history itself";
    const bool failed = GetParam().result == MailResult::Failed;
    EXPECT_EQ(surroundings_.notice.text(), failed ? QStringLiteral("Mail: nobody answers") : QString());
}

INSTANTIATE_TEST_SUITE_P(
    Ends, HistoryMailEnd,
    ::testing::Values(MailEnd{"Cancelled", MailResult::Cancelled, "Mail Send Cancel", true},
                      MailEnd{"Saved", MailResult::Saved, "Mail saved successfully", true},
                      MailEnd{"Sent", MailResult::Sent, "Mail sent successfully", false},
                      MailEnd{"Failed", MailResult::Failed, "Failed to send mail", false}),
    [](const auto& end) { return end.param.name; });

TEST_F(HistoryExport, AMailThatIsNotFinishedLeavesNoFileBehind) {
    open();
    choose("Email");
    ASSERT_EQ(files(), QStringList{kText});
    screen_.reset();
    EXPECT_EQ(files(), QStringList());
}

TEST_F(HistoryExport, AnAlertWithoutAMessageIsNone) {
    open().alertWithTitle(QStringLiteral("title"), {});
    EXPECT_FALSE(surroundings_.alerts.isShown());
    screen_->alertWithTitle(QStringLiteral("ignored"), QStringLiteral("text"));
    EXPECT_EQ(surroundings_.alerts.title(), QStringLiteral("Tips"));
}

TEST_F(HistoryExport, TheSubjectIsTheLastRecordsProjectName) {
    open("O'Neill \"בדיקה\"\r\nBcc: all@example.org");
    EXPECT_EQ(screen_->mailTitle, "O'Neill \"בדיקה\"\r\nBcc: all@example.org");
}

}  // namespace
}  // namespace kestrix::history
