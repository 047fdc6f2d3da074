#include "tests/shell/madeup/MadeUpViewController.h"

#include "ui/Palette.h"

namespace kestrix::madeup {

void MadeUpViewController::viewDidLoad() {
    lblProject.setText(tr("Project"));
    lblOperator.setText(tr("Operator"));
    for (ui::Label* caption : {&lblProject, &lblOperator}) {
        caption->setFont(QStringLiteral("Arial"), 14);
        caption->setTextColor(ui::Palette::textOnDark);
    }
    projectName.setAccessibleName(tr("Project"));
    projectName.setPlaceholder(tr("project"));
    operators.setAccessibleName(tr("Operator"));
    operators.setPlaceholder(tr("name"));
    operators.setReturnAction([this] {
        heard.emplace_back("return");
        return true;
    });
    btnAsk.setTitle(tr("Ask"));
    btnAsk.setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    btnAsk.setAction([this] { pressAsk(); });
    btnTell.setTitle(tr("Tell"));
    btnTell.setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    btnTell.setAction([this] { pressTell(); });
    constexpr int kRecords = 12;  // more than are seen at once
    for (int number = 1; number <= kRecords; ++number)
        rows.append({.texts = {tr("Record %1").arg(number), tr("0.2Ω")}, .mark = {}});
    rows.setMark(1, tr("Not stored"));
}

void MadeUpViewController::pressAsk() {
    services_.alerts.show(
        {.title = tr("Delete"),
         .text = tr("Delete this record with its measurements?"),
         .buttons = {tr("Delete"), tr("Cancel")},
         .cancelButton = 1,
         .answered = [this](int button) { heard.push_back("answer " + std::to_string(button)); }},
        *this);
}

void MadeUpViewController::pressTell() {
    services_.notice.show(
        tr("The record was deleted"), tr("Undo"), [this] { heard.emplace_back("undo"); }, *this);
}

}  // namespace kestrix::madeup
