#include "shell/SafetyTipsViewController.h"

#include <QCoreApplication>

namespace kestrix::shell {
namespace {

constexpr double kTipLeft = 8;
constexpr double kTipWidth = 304;
constexpr double kTipsHeight = 1180;

struct Tip {
    const char* image;
    double y;
    double height;
    const char* name;         // both to be translated
    const char* description;  // what the picture says
};

constexpr Tip kTips[] = {
    {"help_safety1.png", 20, 167, QT_TRANSLATE_NOOP("SafetyTips", "Who may test, and where"),
     QT_TRANSLATE_NOOP(
         "SafetyTips",
         "Only for people who are trained to work on electrical installations, by the rules that "
         "apply where they work. Never exceed the voltage and the measurement category (CAT) that "
         "are marked on the tester, such as CAT III or CAT IV with a max. voltage. Leads and "
         "probes are marked as well: the lowest mark counts.")},
    {"help_safety2.png", 201, 124, QT_TRANSLATE_NOOP("SafetyTips", "Before each use"),
     QT_TRANSLATE_NOOP(
         "SafetyTips",
         "Look at the case, the battery cover, the leads and the probes. Damaged, wet or open: do "
         "not use it. Prove it on a known live source, before and after. Use the sockets as they "
         "are marked.")},
    {"help_safety3.png", 339, 163, QT_TRANSLATE_NOOP("SafetyTips", "Insulation and continuity: only dead"),
     QT_TRANSLATE_NOOP(
         "SafetyTips",
         "Switch off, and verify that the circuit is dead. Take loads, electronics and surge arresters "
         "off: the test voltage can destroy them. An insulation test puts up to 1000 V on leads and "
         "circuit. Let nobody touch them, and keep the probes on until the circuit is discharged.")},
    {"help_safety4.png", 516, 404, QT_TRANSLATE_NOOP("SafetyTips", "Working dead: five rules, in this order"),
     QT_TRANSLATE_NOOP(
         "SafetyTips",
         "1 Disconnect: all poles, and every source: mains, solar, battery, generator, control "
         "circuits. 2 Secure against switching on: lock the switch, hang up the sign. The key "
         "stays with the person who works. 3 Verify: no voltage at any pole. Each conductor "
         "against each and against earth, with a two-pole voltage tester that is proved before and"
         " after. 4 Earth and short-circuit: first the earth, then the conductors. Taken off only "
         "while a test needs it. 5 Cover or fence live parts nearby: what stays live within reach "
         "is covered, or fenced off at a distance. This application never proves that a circuit is"
         " dead: what it shows came by radio, and may be old.")},
    {"help_safety5.png", 934, 146, QT_TRANSLATE_NOOP("SafetyTips", "Loop and RCD: the circuit is live"),
     QT_TRANSLATE_NOOP(
         "SafetyTips",
         "Fingers stay behind the guard of the probe. Nobody touches PE, or metal joined to it. "
         "The RCD may trip and switch off: first warn those who need the power. Stop if the wiring"
         " is wrong: PE open, L and N swapped, or a voltage on PE.")},
};

}  // namespace

void SafetyTipsViewController::viewDidLoad() {
    const auto told = [](const char* text) { return QCoreApplication::translate("SafetyTips", text); };
    for (const Tip& tip : kTips)
        addPicture(tip.image, {kTipLeft, tip.y, kTipWidth, tip.height},
                   {told(tip.name), told(tip.description)});
    scrollView.setAccessibleName(tr("Safety tips"));
    scrollView.setContentHeight(kTipsHeight);
}

}  // namespace kestrix::shell
