// What the export menu of the history screen does.

#include <QFile>

#include <utility>

#include "history/Export.h"
#include "history/ExportLines.h"
#include "history/HistoryViewController.h"
#include "history/PdfReport.h"
#include "history/ReportLayout.h"
#include "history/ReportMail.h"
#include "ui/MBButtonMenuViewController.h"

namespace kestrix::history {
namespace {

using platform::MailResult;

enum MenuButton { kEmail, kExportToCsv, kExportToPdf };

}  // namespace

HistoryViewController::~HistoryViewController() {
    deleteMailFile();
}

void HistoryViewController::exportAs(int button) {
    if (button < kEmail || button > kExportToPdf) return;
    // A report with fewer measurements than there are would be signed as a whole one.
    if (!readProblem_.isEmpty()) return alertWithTitle({}, readProblem_);
    if (button == kEmail && !connectedToNetwork())
        return alertWithTitle({}, tr("Failed to send mail, connect to the network！"));
    dismissAfterAlert = button == kEmail;
    if (button == kEmail) SendMail();
    if (button == kExportToCsv) ExportCVS();
    if (button == kExportToPdf) ExportPDF();
}

std::string HistoryViewController::getExportTime() const {
    return services_.stampText.text(services_.now());
}

int HistoryViewController::getPDFHeight() const {
    std::vector<std::string> rows(arrays.size());
    for (std::size_t row = 0; row < rows.size(); ++row) appendMeasureLine(rows[row], arrays[row]);
    return history::getPDFHeight(rows);
}

QString HistoryViewController::getMessages() {
    timeStr = getExportTime();
    textFile_ = writeExport(kTextFormat, timeStr);
    deletefile = textFile_.path;
    return deletefile;
}

ExportedFile HistoryViewController::writeExport(const ExportFormat& format, const std::string& stamp) const {
    const ExportedRecord exported{
        .record = record, .measurements = measurementsIn(arrays), .timeStamp = stamp, .evidence = dao.get()};
    return exportIntoFolder(exported, format, services_.documents);
}

// The alert says the same of a failure, whose reason is in the log; where the file is shows that it is there.
void HistoryViewController::tellSuccess(const ExportedFile& file) {
    if (file.outcome.done) services_.notice.show(tr("Saved as %1").arg(file.path));
    alertWithTitle({}, tr("Save the file success"));
}

void HistoryViewController::ExportCVS() {
    getMessages();
    tellSuccess(textFile_);
}

void HistoryViewController::ExportPDF() {
    tellSuccess(writeExport(kPdfFormat, getExportTime()));
}

void HistoryViewController::SendMail() {
    const QString path = getMessages();
    if (!services_.navigation.has(ui::ScreenId::MailCompose)) return;
    // What else may have this name is nobody's attachment.
    QFile file(path);
    const bool opened = textFile_.outcome.done && file.open(QIODevice::ReadOnly);
    const QByteArray content = opened ? file.readAll() : QByteArray();
    const platform::MailMessage message = reportMail(mailTitle, timeStr, kTextFormat, content.toStdString());
    mailIsOpen_ = true;
    mailToCompose = MailToCompose{
        .recipient = message.recipient,
        .subject = message.subject,
        .htmlBody = message.htmlBody,
        .attachment = message.attachment,
        .problem =
            opened ? QString()
                   : tr("The attachment is empty: %1").arg(QString::fromStdString(textFile_.outcome.reason)),
        .delegate = this};
    services_.navigation.present(ui::ScreenId::MailCompose, true);
}

void HistoryViewController::deleteMailFile() {
    if (std::exchange(mailIsOpen_, false) && textFile_.outcome.done) QFile::remove(deletefile);
}

void HistoryViewController::mailComposeController(MailComposeViewController&, MailResult didFinishWithResult,
                                                  const std::string& error) {
    deleteMailFile();
    mailProblem_ = QString::fromStdString(error);
    switch (didFinishWithResult) {
        case MailResult::Cancelled:
            alertWithTitle({}, tr("Mail Send Cancel"));
            return services_.navigation.dismiss(true);
        case MailResult::Saved:
            alertWithTitle({}, tr("Mail saved successfully"));
            return services_.navigation.dismiss(true);
        case MailResult::Sent:
            return alertWithTitle({}, tr("Mail sent successfully"));
        case MailResult::Failed:
            return alertWithTitle({}, tr("Failed to send mail"));
    }
}

void HistoryViewController::alertWithTitle(const QString&, const QString& msg) {
    if (msg.isEmpty()) return;
    services_.alerts.show({.title = tr("Tips"),
                           .text = msg,
                           .buttons = {tr("OK")},
                           .answered = [this](int button) { alertView(button); }},
                          *this);
}

void HistoryViewController::alertView(int) {
    if (const QString problem = std::exchange(mailProblem_, {}); !problem.isEmpty())
        services_.notice.show(tr("Mail: %1").arg(problem));
    if (dismissAfterAlert) services_.navigation.dismiss(true);
}

}  // namespace kestrix::history
