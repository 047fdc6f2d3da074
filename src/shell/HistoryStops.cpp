#include "shell/HistoryStops.h"

#include <utility>

#include "history/HistoryViewController.h"
#include "history/MailComposeViewController.h"
#include "storage/Selection.h"

namespace kestrix::shell {

void showEmptyRecord(ui::Screen& presented) {
    auto& screen = dynamic_cast<history::HistoryViewController&>(presented);
    storage::RecordData record;
    record.projectName = "Garden Road 3";
    screen.dao->addRecordForm(record);
    storage::selectedRecordId = screen.dao->lastOutcome().identity;
    screen.getMeasureData();
    screen.setTitle(screen.name());  // it came with another record
}

void showExportMenu(ui::Screen& presented) {
    dynamic_cast<history::HistoryViewController&>(presented).pressShare();
}

void showTypedMail(ui::Screen& presented) {
    auto& screen = dynamic_cast<history::MailComposeViewController&>(presented);
    const std::pair<ui::TextField*, const char*> typed[] = {{&screen.recipient, "office@example.org"},
                                                            {&screen.server, "mail.example.org"},
                                                            {&screen.user, "ann"},
                                                            {&screen.password, "not a password"},
                                                            {&screen.from, "ann@example.org"}};
    for (const auto& [field, text] : typed) field->setText(QLatin1String(text));
}

void showMailProblem(ui::Screen& presented) {
    showTypedMail(presented);
    auto& screen = dynamic_cast<history::MailComposeViewController&>(presented);
    screen.recipient.setText(screen.recipient.text().replace(u'.', u' '));
    screen.pressSend();
}

}  // namespace kestrix::shell
