#include "shell/HowtoUseViewController.h"

#include <QCoreApplication>

namespace kestrix::shell {
namespace {

constexpr double kUseLeft = 20;
constexpr double kUseWidth = 280;
constexpr double kUsePictureHeight = 210;
constexpr double kHeadingHeight = 25;
constexpr double kUseHeight = 2500;

struct Heading {
    const char* text;
    double y;
};

// As the tester names its functions.
constexpr Heading kHeadings[] = {{"INSULATION", 15}, {"RE", 265},        {"LOWOHM", 515},
                                 {"V", 765},         {"LOOP/PFC", 1465}, {"RCD", 1935}};

// What a picture shows, to be translated: its title, and what goes where.
struct Shown {
    const char* image;
    const char* title;
    const char* description;
};

constexpr Shown kInsulation{
    "insulation.png", QT_TRANSLATE_NOOP("HowtoUse", "Insulation resistance"),
    QT_TRANSLATE_NOOP(
        "HowtoUse",
        "Dead: the main switch is off, N is lifted, loads and lamps are out. The leads L and PE of the "
        "tester go to L and PE of the circuit; it shows 480 MΩ. Measure L-PE as drawn, then N-PE, then "
        "L-N. With electronics that cannot be taken out: only L and N joined, both together to PE, at "
        "250 V.")};

constexpr Shown kEarth{
    "re_tur.png", QT_TRANSLATE_NOOP("HowtoUse", "Earth resistance"),
    QT_TRANSLATE_NOOP(
        "HowtoUse",
        "Dead: the electrode E, whose earth conductor is taken off, and the spikes S and H stand in one "
        "line: H at the distance d, S at 62 % of d. Each goes to its socket of the tester, which shows "
        "18.5 Ω. Switch off, then open the earth conductor; close it again at the end. d: 20 m or more. "
        "Measure with S 2 m nearer and 2 m farther, too: if readings differ, make d longer.")};

constexpr Shown kContinuity{
    "continuity.png", QT_TRANSLATE_NOOP("HowtoUse", "Continuity of PE"),
    QT_TRANSLATE_NOOP(
        "HowtoUse",
        "Dead: the lead PE of the tester is at the main earth bar, its lead L at the metal case of a "
        "machine; "
        "it shows 0.32 Ω. Resistance of the protective conductor, from the bar to each metal case. First "
        "join the leads and press ZERO; clean the metal where the probe stands.")};

constexpr Shown kVoltageLN{
    "voltage1.png", QT_TRANSLATE_NOOP("HowtoUse", "Voltage L-N"),
    QT_TRANSLATE_NOOP(
        "HowtoUse",
        "Live: the leads L and N of the tester go to L and N of an outlet at the supply, PE stays free; it "
        "shows 230 V "
        "and 50 Hz. Between line and neutral: the mains voltage. Never trust 0 V: prove the tester on a "
        "known live source before and after.")};

constexpr Shown kVoltagePE{
    "voltage2.png", QT_TRANSLATE_NOOP("HowtoUse", "Voltage L-PE and N-PE"),
    QT_TRANSLATE_NOOP(
        "HowtoUse",
        "Live: the leads L, N and PE of the tester go to L, N and PE of an outlet at the supply; it shows "
        "230 V and 50 Hz. TN and TT: L-PE is the mains voltage, N-PE near 0 V. N-PE at mains voltage: "
        "L/N swapped, N open, or PE live. L-PE far below: PE open or live. Stop; touch no metal.")};

constexpr Shown kPhaseOrder{
    "voltage3.png", QT_TRANSLATE_NOOP("HowtoUse", "Phase order"),
    QT_TRANSLATE_NOOP("HowtoUse",
                      "Live: the three leads of the tester go to the lines L1, L2 and L3 of the supply; it "
                      "shows 1.2.3. 1.2.3: the "
                      "order is L1 L2 L3, the field turns right. 2.1.3: two of the lines are swapped. Test "
                      "before a motor is connected.")};

constexpr Shown kAtTheOutlet{
    "Zsrcd.png", QT_TRANSLATE_NOOP("HowtoUse", "At an outlet behind an RCD"),
    QT_TRANSLATE_NOOP(
        "HowtoUse",
        "Live: the supply goes through the RCD to the outlet. The leads L, N and PE of the tester, at "
        "LOOP or RCD, go to L, N and PE of the outlet. LOOP/PFC: set NO Trip, or the RCD switches"
        " off. RCD: X1/2 must hold, X1 and X5 must trip. Warn those who use the circuit; unplug "
        "the loads.")};

constexpr Shown kAtTheBoard{
    "Zsrcd2.png", QT_TRANSLATE_NOOP("HowtoUse", "At the distribution board"),
    QT_TRANSLATE_NOOP(
        "HowtoUse",
        "Live: the tester, at LOOP or RCD, is connected to L, N and PE of the board. B, behind the RCD,"
        " as drawn: RCD, or LOOP/PFC with NO Trip; the circuits are off. A, before the RCD, at "
        "the supply: only LOOP/PFC with Hi Amp, and no RCD protects you.")};

struct Placed {
    const Shown& shown;
    double y;
};

constexpr Placed kPictures[] = {
    {kInsulation, 40},   {kEarth, 290},        {kContinuity, 540},  {kVoltageLN, 790},    {kVoltagePE, 1010},
    {kPhaseOrder, 1230}, {kAtTheOutlet, 1490}, {kAtTheBoard, 1710}, {kAtTheOutlet, 1960}, {kAtTheBoard, 2180},
};

}  // namespace

void HowtoUseViewController::viewDidLoad() {
    for (const Heading& heading : kHeadings) setLables(QLatin1String(heading.text), heading.y);
    const auto told = [](const char* text) { return QCoreApplication::translate("HowtoUse", text); };
    for (const Placed& picture : kPictures)
        addPicture(picture.shown.image, {kUseLeft, picture.y, kUseWidth, kUsePictureHeight},
                   {told(picture.shown.title), told(picture.shown.description)});
    scrollView.setAccessibleName(tr("How to use the tester"));
    scrollView.setContentHeight(kUseHeight);
}

void HowtoUseViewController::setLables(const QString& text, double y) {
    addText(text, {kUseLeft, y, kUseWidth, kHeadingHeight}, true).setFont(QStringLiteral("Arial"), 20);
}

}  // namespace kestrix::shell
