#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QInputMethodEvent>

#include "history/HistoryViewController.h"
#include "history/MailComposeViewController.h"
#include "storage/Selection.h"
#include "storage/ServiceDao.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {

// The window with the composer of a test record's mail, opened as a user does.
class MailScreenFixture : public testing::WindowWalks {
  protected:
    MailScreenFixture() {
        history::MailPasswords::forgetSession();
        options_.slideDuration = std::chrono::milliseconds(0);
    }
    ~MailScreenFixture() override {
        history::HistoryViewController::dismissAfterAlert = false;
        history::MailPasswords::forgetSession();
    }

    using MailResult = platform::MailResult;
    using ScreenId = ui::ScreenId;

    void openMail(QSize size = kSmall) {
        open(size);
        storage::ServiceDao dao(app().documents());
        storage::RecordData record;
        record.projectName = "Plant A";
        dao.addRecordForm(record);
        storage::selectedRecordId = dao.lastOutcome().identity;
        app().screens().present(ScreenId::History, false);
        settle();
        chooseEmail();
    }
    void chooseEmail() {
        tap("btnShare");
        settle();
        tap("menuButtonEmail");
        settle();
    }
    void type(const char* field, const char* text) {
        click(field);
        pressKey(Qt::Key_A, Qt::ControlModifier);
        QInputMethodEvent event;
        event.setCommitString(QString::fromUtf8(text));
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    void complete() {
        type("recipient", "office@example.org");
        type("server", "mail.example.org");
        type("user", "ann");
        type("password", "secret");
        type("from", "ann@example.org");
    }
    ScreenId shown() { return app().screens().topmost()->id(); }
    QStringList texts() {
        return QDir(app().documents().path()).entryList({QStringLiteral("*.csv")}, QDir::Files);
    }
};

}  // namespace kestrix::shell
