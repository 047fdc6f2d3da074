#include "shell/Screens.h"

#include <QCoreApplication>

#include "history/HistoryCellViewController.h"
#include "history/HistoryViewController.h"
#include "history/MailComposeViewController.h"
#include "shell/AboutViewController.h"
#include "shell/BluetoothConnectionHelpViewController.h"
#include "shell/HelpViewController.h"
#include "shell/HistoryStops.h"
#include "shell/HowtoUseViewController.h"
#include "shell/InformationStops.h"
#include "shell/MoreAppsViewController.h"
#include "shell/SafetyTipsViewController.h"
#include "shell/SaveStops.h"
#include "shell/TesterStops.h"
#include "shell/TesterViewController.h"
#include "storage/SaveDataViewController.h"
#include "ui/FramedScreen.h"

namespace kestrix::shell {

const std::vector<ScreenRow>& screens() {
    static const std::vector<ScreenRow> rows{
        // With its #include "folder/NameViewController.h" above:
        // {ui::ScreenId::Name, QT_TRANSLATE_NOOP("Screens", "Title"),
        //  make<folder::NameViewController>, "Folder/NameView.qml", {{"NN-name"}}},
        {ui::ScreenId::SaveData,
         QT_TRANSLATE_NOOP("Screens", "Save test record"),
         make<storage::SaveDataViewController>,
         "Storage/SaveDataView.qml",
         {{"21-save", showPlaceholders},
          {"22-save-typed", showTypedForm},
          {"23-save-failed", showFailedSave}}},
        {ui::ScreenId::History,
         QT_TRANSLATE_NOOP("Screens", "History"),
         make<history::HistoryViewController>,
         "History/HistoryView.qml",
         {{"30-history"}, {"31-history-empty", showEmptyRecord}, {"32-history-export", showExportMenu}}},
        {ui::ScreenId::HistoryCell,
         QT_TRANSLATE_NOOP("Screens", "Measurement"),
         make<history::HistoryCellViewController>,
         "History/HistoryCellView.qml",
         {{"33-measurement"}}},
        {ui::ScreenId::MailCompose,
         QT_TRANSLATE_NOOP("Screens", "Mail"),
         make<history::MailComposeViewController>,
         "History/MailComposeView.qml",
         {{"34-mail", showTypedMail}, {"35-mail-problem", showMailProblem}}},
        {ui::ScreenId::Tester,
         QT_TRANSLATE_NOOP("Screens", "Tester"),
         make<TesterViewController>,
         "Shell/TesterView.qml",
         {{"37-tester"}, {"38-tester-typed", showTypedAddress}}},
        {ui::ScreenId::Help,
         QT_TRANSLATE_NOOP("Screens", "Help"),
         make<HelpViewController>,
         "Shell/HelpView.qml",
         {{"40-help"}}},
        {ui::ScreenId::BluetoothConnectionHelp,
         QT_TRANSLATE_NOOP("Screens", "Bluetooth Connection"),
         make<BluetoothConnectionHelpViewController>,
         "Shell/PicturePageView.qml",
         {{"41-bluetooth-help"}}},
        {ui::ScreenId::SafetyTips,
         QT_TRANSLATE_NOOP("Screens", "Safety Tips"),
         make<SafetyTipsViewController>,
         "Shell/SafetyTipsView.qml",
         {{"42-safety-tips"}, {"42-safety-tips-2", showSecondPage}, {"42-safety-tips-3", showLastPage}}},
        {ui::ScreenId::HowtoUse,
         QT_TRANSLATE_NOOP("Screens", "How to Use"),
         make<HowtoUseViewController>,
         "Shell/PicturePageView.qml",
         {{"43-how-to-use"},
          {"43-how-to-use-2", showSecondPage},
          {"43-how-to-use-3", showThirdPage},
          {"43-how-to-use-4", showFourthPage},
          {"43-how-to-use-5", showLastPage}}},
        {ui::ScreenId::About,
         QT_TRANSLATE_NOOP("Screens", "About"),
         make<AboutViewController>,
         "Shell/AboutView.qml",
         {{"45-about"}}},
        {ui::ScreenId::MoreApps,
         QT_TRANSLATE_NOOP("Screens", "More Apps"),
         make<MoreAppsViewController>,
         "Shell/MoreAppsView.qml",
         {{"46-more-apps"}}},
    };
    return rows;
}

void registerScreen(const ScreenRow& row, ui::ScreenStack& stack, const ui::Services& services) {
    const auto makeScreen = [row, services] {
        std::unique_ptr<ui::Screen> screen = row.make(row.id, services);
        if (auto* framed = qobject_cast<ui::FramedScreen*>(screen.get()))
            framed->setName(QCoreApplication::translate("Screens", row.title));
        return screen;
    };
    stack.registerScreen(row.id, makeScreen,
                         QUrl(QStringLiteral("qrc:/qt/qml/Kestrix/") + QLatin1String(row.view)));
}

}  // namespace kestrix::shell
