// The information screens without their views.
#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

#include "shell/AboutViewController.h"
#include "shell/BluetoothConnectionHelpViewController.h"
#include "shell/HelpViewController.h"
#include "shell/HowtoUseViewController.h"
#include "shell/MoreAppsViewController.h"
#include "shell/SafetyTipsViewController.h"
#include "shell/Screens.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/TestServices.h"

namespace kestrix::shell {
namespace {

using ui::ScreenId;
using Asked = std::vector<std::string>;

class InformationControllers : public ::testing::Test {
  protected:
    template <class Controller>
    std::unique_ptr<Controller> load(ScreenId id) {
        auto controller = std::make_unique<Controller>(id, services_.services());
        controller->loadView();
        return controller;
    }
    static std::vector<std::string> images(const PicturePage& page) {
        std::vector<std::string> names;
        for (const PlacedPicture& picture : page.pictures())
            names.push_back(picture.imageView->image().toStdString());
        return names;
    }

    testing::TestServices services_;
};

TEST_F(InformationControllers, HelpsFirstButtonOpensTheBluetoothHelpItsSecondSafetyTips) {
    const auto help = load<HelpViewController>(ScreenId::Help);
    EXPECT_EQ(help->btnBluetooth.title(), QStringLiteral("Bluetooth Connection Help"));
    EXPECT_EQ(help->btnSafety.title(), QStringLiteral("Safety Tips"));
    help->btnBluetooth.press();
    help->btnSafety.press();
    EXPECT_EQ(services_.asked,
              (Asked{"present BluetoothConnectionHelp animated", "present SafetyTips animated"}));
}

TEST_F(InformationControllers, PressUSEPresentsHowToUse) {
    load<HelpViewController>(ScreenId::Help)->pressUSE();
    EXPECT_EQ(services_.asked, Asked{"present HowtoUse animated"});
}

TEST_F(InformationControllers, NoControlOfHelpLeadsToHowToUse) {
    const auto help = load<HelpViewController>(ScreenId::Help);
    for (ui::Button* button : help->findChildren<ui::Button*>()) button->press();
    for (int key = Qt::Key_Space; key <= Qt::Key_AsciiTilde; ++key)
        help->pressKey(key, Qt::NoModifier, false);
    for (int key = Qt::Key_Escape; key <= Qt::Key_F12; ++key) help->pressKey(key, Qt::NoModifier, false);
    EXPECT_GE(services_.asked.size(), 3U);
    for (const std::string& asked : services_.asked) EXPECT_EQ(asked.find("HowtoUse"), std::string::npos);
}

TEST_F(InformationControllers, EachGoesBackByItsBackButton) {
    for (const ScreenRow& row : screens()) {
        if (row.id < ScreenId::BluetoothConnectionHelp) continue;
        services_.asked.clear();
        const auto screen = row.make(row.id, services_.services());
        screen->loadView();
        dynamic_cast<ui::FramedScreen&>(*screen).btnBack.press();
        EXPECT_EQ(services_.asked, Asked{"dismiss animated"}) << ui::nameOf(row.id);
    }
}

TEST_F(InformationControllers, TheBluetoothHelpsTextIsAsHighAsItMeasures) {
    services_.textHeight = 123;
    const auto help = load<BluetoothConnectionHelpViewController>(ScreenId::BluetoothConnectionHelp);
    EXPECT_EQ(images(*help), Asked{"orvo_help_blue_img2.png"});
    ASSERT_EQ(help->texts().size(), 1U);
    EXPECT_EQ(
        help->texts()[0].label->text(),
        QStringLiteral(
            "Click the record icon in the app and confirm opening the bluebooth connecting. Press the item "
            "to pair. If connect successfully, show “Connected” and automatically jump to recording "
            "screen. Otherwise show \"Disconnected\" and stay in the bluebooth connecting screen."));
    EXPECT_EQ(help->texts()[0].place.size(), QSizeF(260, 123));
    EXPECT_GE(help->scrollView.contentHeight(), help->texts()[0].place.bottom());
}

TEST_F(InformationControllers, TheBluetoothHelpsTextIsMeasuredForItsWidthAndItsMostHeight) {
    struct Measure final : ui::TextMeasure {
        mutable QString family;
        mutable int size = 0;
        mutable QSizeF room;
        double wrappedHeight(const QString&, const QString& ofFamily, int ofSize, double width,
                             double maxHeight) const override {
            family = ofFamily;
            size = ofSize;
            room = {width, maxHeight};
            return maxHeight;
        }
    };
    Measure measure;
    services_.fonts = &measure;
    const auto help = load<BluetoothConnectionHelpViewController>(ScreenId::BluetoothConnectionHelp);
    EXPECT_EQ(measure.room, QSizeF(260, 400));
    const ui::Label& label = *help->texts().at(0).label;
    EXPECT_EQ(measure.family, label.fontFamily());
    EXPECT_EQ(measure.size, label.fontSize());
    EXPECT_EQ(help->texts()[0].place.size(), QSizeF(260, 400));
}

TEST_F(InformationControllers, TheSafetyTipsStandInTheirOrderAndPlaces) {
    const auto tips = load<SafetyTipsViewController>(ScreenId::SafetyTips);
    EXPECT_EQ(images(*tips), (Asked{"help_safety1.png", "help_safety2.png", "help_safety3.png",
                                    "help_safety4.png", "help_safety5.png"}));
    const QRectF places[] = {
        {8, 20, 304, 167}, {8, 201, 304, 124}, {8, 339, 304, 163}, {8, 516, 304, 404}, {8, 934, 304, 146}};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(tips->pictures()[i].place, places[i]) << i;
    EXPECT_EQ(tips->scrollView.contentHeight(), 1180);
}

TEST_F(InformationControllers, HowToUseShowsThePicturesOfEachFunctionBelowItsLabel) {
    const auto use = load<HowtoUseViewController>(ScreenId::HowtoUse);
    Asked labels;
    std::vector<double> labelYs;
    for (const PlacedText& text : use->texts()) {
        labels.push_back(text.label->text().toStdString());
        labelYs.push_back(text.place.y());
        EXPECT_TRUE(text.heading);
        EXPECT_EQ(text.label->backgroundColor(), ui::Palette::clear);
        EXPECT_EQ(text.label->textColor(), QColor(Qt::white));
        EXPECT_EQ(text.label->fontFamily(), QStringLiteral("Arial"));
        EXPECT_EQ(text.label->fontSize(), 20);
    }
    EXPECT_EQ(labels, (Asked{"INSULATION", "RE", "LOWOHM", "V", "LOOP/PFC", "RCD"}));
    EXPECT_EQ(labelYs, (std::vector<double>{15, 265, 515, 765, 1465, 1935}));
    EXPECT_EQ(images(*use),
              (Asked{"insulation.png", "re_tur.png", "continuity.png", "voltage1.png", "voltage2.png",
                     "voltage3.png", "Zsrcd.png", "Zsrcd2.png", "Zsrcd.png", "Zsrcd2.png"}));
    std::vector<double> ys;
    for (const PlacedPicture& picture : use->pictures()) {
        ys.push_back(picture.place.y());
        EXPECT_EQ(picture.place.size(), QSizeF(280, 210));
    }
    EXPECT_EQ(ys, (std::vector<double>{40, 290, 540, 790, 1010, 1230, 1490, 1710, 1960, 2180}));
    EXPECT_EQ(use->scrollView.contentHeight(), 2500);
}

TEST_F(InformationControllers, EveryKeyThatScrollsDoesWithTheKeyboardAnywhere) {
    const auto tips = load<SafetyTipsViewController>(ScreenId::SafetyTips);
    tips->scrollView.setSeen(0, 500);
    EXPECT_TRUE(tips->pressKey(Qt::Key_PageDown, Qt::NoModifier, false));
    EXPECT_EQ(tips->scrollView.position(), 460);
    EXPECT_TRUE(tips->pressKey(Qt::Key_Escape, Qt::NoModifier, false));
    EXPECT_EQ(services_.asked, Asked{"dismiss animated"});
}

// The words of the drawing, as its file holds them.
QStringList wordsOn(const QString& picture) {
    QFile file(QStringLiteral(KESTRIX_SOURCE_DIR "/artwork/") + picture.chopped(4) + QStringLiteral(".svg"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << picture.toStdString();
    static const QRegularExpression text(QStringLiteral("<text[^>]*>(.*?)</text>"),
                                         QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression word(QStringLiteral("[\\w-]{3,}"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    QStringList words;
    auto texts = text.globalMatch(QString::fromUtf8(file.readAll()));
    while (texts.hasNext()) {
        auto match = word.globalMatch(texts.next().captured(1));
        while (match.hasNext()) words << match.next().captured();
    }
    return words;
}

TEST_F(InformationControllers, AScreenReaderSaysEveryWordThatIsDrawn) {
    const auto tips = load<SafetyTipsViewController>(ScreenId::SafetyTips);
    const auto use = load<HowtoUseViewController>(ScreenId::HowtoUse);
    const auto connection = load<BluetoothConnectionHelpViewController>(ScreenId::BluetoothConnectionHelp);
    int compared = 0;
    for (const PicturePage* page :
         {static_cast<PicturePage*>(tips.get()), static_cast<PicturePage*>(use.get()),
          static_cast<PicturePage*>(connection.get())}) {
        for (const PlacedPicture& picture : page->pictures()) {
            EXPECT_FALSE(picture.imageView->accessibleName().isEmpty());
            const QString said =
                picture.imageView->accessibleName() + u' ' + picture.imageView->description();
            for (const QString& word : wordsOn(picture.imageView->image())) {
                ++compared;
                EXPECT_TRUE(said.contains(word, Qt::CaseInsensitive))
                    << picture.imageView->image().toStdString() << ": " << word.toStdString();
            }
        }
    }
    EXPECT_GT(compared, 300);
}

TEST_F(InformationControllers, AboutShowsTheVersionAndOpensTheMakersPage) {
    const auto about = load<AboutViewController>(ScreenId::About);
    EXPECT_EQ(about->lblVersion.text(), QStringLiteral("Version\uff1a1.0"));
    EXPECT_EQ(about->logo.image(), QStringLiteral("orvo_about_logo.png"));
    const QString address = productContent().webAddress;
    EXPECT_EQ(about->btnURL.title(), QStringLiteral("Visit:") + address);
    about->btnURL.press();
    EXPECT_EQ(services_.addresses, Asked{address.toStdString()});
    EXPECT_FALSE(services_.notice.isShown());
}

TEST_F(InformationControllers, AnAddressThatCannotBeOpenedIsSaidInANotice) {
    services_.opensAddresses = false;
    load<AboutViewController>(ScreenId::About)->pressURL();
    EXPECT_EQ(services_.notice.text(), QStringLiteral("No browser opens ") + productContent().webAddress);
    services_.notice.clear();
    load<MoreAppsViewController>(ScreenId::MoreApps)->pressURL(2);
    EXPECT_EQ(services_.notice.text(),
              QStringLiteral("No browser opens ") + productContent().applications[2].address);
}

TEST_F(InformationControllers, MoreAppsPairsIconNameDescriptionAndAddressByRow) {
    const auto apps = load<MoreAppsViewController>(ScreenId::MoreApps);
    const ProductContent content = productContent();
    const QVariantList rows = apps->dataList();
    ASSERT_EQ(rows.size(), 3);
    for (int row = 0; row < 3; ++row) {
        const ProductContent::Application& application = content.applications[static_cast<std::size_t>(row)];
        const QVariantMap record = rows[row].toMap();
        EXPECT_EQ(record.value(QStringLiteral("ImgUrl")).toString(), application.imgUrl);
        EXPECT_EQ(record.value(QStringLiteral("Title")).toString(), application.title);
        EXPECT_EQ(record.value(QStringLiteral("Content")).toString(), application.content);
        services_.addresses.clear();
        apps->didSelectRow(row);
        EXPECT_EQ(services_.addresses, Asked{application.address.toStdString()});
    }
    EXPECT_EQ(rows[0].toMap().value(QStringLiteral("ImgUrl")).toString(),
              QStringLiteral("orvo_more_app.png"));
    EXPECT_EQ(rows[1].toMap().value(QStringLiteral("ImgUrl")).toString(),
              QStringLiteral("orvo_more_app2.png"));
    EXPECT_EQ(rows[2].toMap().value(QStringLiteral("ImgUrl")).toString(),
              QStringLiteral("orvo_more_app3.png"));
}

TEST_F(InformationControllers, ARowThatIsNotThereOpensNothing) {
    const auto apps = load<MoreAppsViewController>(ScreenId::MoreApps);
    for (const int row : {-1, 3, 1'000'000}) apps->pressURL(row);
    EXPECT_TRUE(services_.addresses.empty());
}

TEST_F(InformationControllers, AChosenRowsAddressIsLogged) {
    load<MoreAppsViewController>(ScreenId::MoreApps)->pressURL(1);
    EXPECT_EQ(testing::logLines().back(),
              "info kestrix.shell: ====urls=====" + productContent().applications[1].address.toStdString());
}

}  // namespace
}  // namespace kestrix::shell
