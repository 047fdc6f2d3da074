#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "history/Export.h"
#include "history/MailComposing.h"
#include "storage/MeasureData.h"
#include "storage/RecordData.h"
#include "storage/ServiceDao.h"
#include "ui/FramedScreen.h"
#include "ui/MBButtonMenuViewController.h"
#include "ui/Table.h"

namespace kestrix::history {

// The measurements of the test record that storage::selectedRecordId names, and its export: as a text, as a
// report, and by mail. They are read once, when the screen appears, and exported as they were then; it only
// reads. Choosing one presents the screen of that measurement.
class HistoryViewController final : public kestrix::ui::FramedScreen,
                                    public ui::MBButtonMenuViewControllerDelegate,
                                    public MailComposeDelegate {
    Q_OBJECT
    Q_PROPERTY(kestrix::ui::MBButtonMenuViewController* menu READ exportMenu NOTIFY menuMade FINAL)

  public:
    HistoryViewController(ui::ScreenId id, const ui::Services& services);
    HistoryViewController(const HistoryViewController&) = delete;
    HistoryViewController& operator=(const HistoryViewController&) = delete;
    // A mail that is not finished leaves no file behind.
    ~HistoryViewController() override;

    void viewDidLoad() override;
    void viewDidAppear() override;
    void viewWillDisappear() override { deleteMailFile(); }
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

    // Writes the text into the documents folder, and says so.
    void ExportCVS();
    // The same with the report.
    void ExportPDF();
    // Writes the text, and presents the composer with it. Nothing more where there is none.
    void SendMail();
    // Writes the text into the documents folder; `deletefile`, which this answers, is its path, whether it
    // could be written or not.
    QString getMessages();
    // The moment as fourteen digits, "20260304050607".
    std::string getExportTime() const;
    // The height of the report's page when there are many measurements, in points.
    int getPDFHeight() const;
    bool connectedToNetwork() const { return services_.reachability.isReachable(); }
    void mailComposeController(MailComposeViewController& controller,
                               platform::MailResult didFinishWithResult, const std::string& error) override;
    // Shows the message under "Tips", whatever the title; nothing without a message.
    void alertWithTitle(const QString& title, const QString& msg);
    // The user has confirmed an alert of this screen.
    void alertView(int clickedButtonAtIndex);

    ui::ListModel* dataList() { return &array; }
    ui::MBButtonMenuViewController* exportMenu() const { return menu.get(); }

    ui::Label& historyTitle = screenTitle;  // the record's project name
    ui::Button btnShare{*this, "btnShare", ui::Button::Event::TouchDown};
    ui::ListModel array;
    ui::Table tableView{*this, "tableView", array};

    std::unique_ptr<ui::MBButtonMenuViewController> menu;  // none before it was asked for

    std::unique_ptr<storage::ServiceDao> dao;
    std::vector<storage::MeasureData> arrays;   // as the database has them; a row of the table each
    std::string recordNames;                    // the project name in the first of them
    std::optional<storage::RecordData> record;  // none: there is no such test record
    std::string mailTitle;                      // its project name
    std::string timeStr;                        // of the last export
    QString deletefile;                         // the path of the last text

    // Whether confirming an alert dismisses the topmost screen: from the choice of a mail to that of a file.
    static inline bool dismissAfterAlert = false;

  Q_SIGNALS:
    void menuMade();

  private:
    void readRecord();
    void showWhatIsMissing();
    void exportAs(int button);
    ExportedFile writeExport(const ExportFormat& format, const std::string& stamp) const;
    void tellSuccess(const ExportedFile& file);
    void deleteMailFile();

    ExportedFile textFile_;    // the last text
    QString readProblem_;      // why not all measurements are here; empty: they are
    QString mailProblem_;      // why the last mail was not sent; told once its alert is confirmed
    bool mailIsOpen_ = false;  // its text is in the folder until it has ended
};

}  // namespace kestrix::history
