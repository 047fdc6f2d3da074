// What stands where on the information screens, in which font, colour and picture.
#include <QFont>

#include "shell/ProductContent.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

using ui::ScreenId;

constexpr ScreenId kInformation[] = {ScreenId::Help,     ScreenId::BluetoothConnectionHelp,
                                     ScreenId::About,    ScreenId::SafetyTips,
                                     ScreenId::HowtoUse, ScreenId::MoreApps};

struct Placed {
    const char* picture;
    QRectF place;
};

class InformationPlaces : public testing::WindowFixture {
  protected:
    InformationPlaces() { options_.slideDuration = std::chrono::milliseconds(0); }
    void show(ScreenId id) {
        open();
        app().screens().present(id, false);
        settle();
    }
    QQuickItem& view() { return item("modalStack"); }
    // Where this picture is to be seen within `root`, in order.
    std::vector<QRectF> placesOf(const char* picture, QQuickItem& root) {
        std::vector<QRectF> places;
        for (QQuickItem* one : testing::itemsUnder(root)) {
            if (!one->isVisible()) continue;
            if (one->property("source").toUrl().fileName() == QLatin1String(picture))
                places.push_back(placeOf(*one));
        }
        return places;
    }
    void expectOnly(const char* picture, const QRectF& place, QQuickItem& root) {
        const std::vector<QRectF> places = placesOf(picture, root);
        ASSERT_EQ(places.size(), 1U) << picture;
        EXPECT_EQ(places[0], place) << picture;
    }
    // The text item within `root` that shows this.
    QQuickItem& textIn(QQuickItem& root, const QString& shown) {
        for (QQuickItem* one : testing::shownTexts(root)) {
            if (one->property("text").toString() == shown) return *one;
        }
        ADD_FAILURE() << "nothing shows '" << shown.toStdString() << "'";
        return root;
    }
    static void expectFont(const QQuickItem& text, const char* family, int size, bool bold = false) {
        const auto font = text.property("font").value<QFont>();
        const std::string shown = text.property("text").toString().toStdString();
        EXPECT_EQ(font.family(), QLatin1String(family)) << shown;
        EXPECT_EQ(font.pixelSize(), size) << shown;
        EXPECT_EQ(font.bold(), bold) << shown;
        EXPECT_EQ(text.property("color").value<QColor>(), QColor(Qt::white)) << shown;
    }
    QRectF glyphsOf(QQuickItem& text) {
        return text.mapRectToItem(&item("points"), testing::paintedRect(text));
    }
    // In points of what scrolls.
    void expectOnPage(const char* name, const QRectF& place) {
        QQuickItem& page = *item("scrollView").property("contentItem").value<QQuickItem*>();
        QQuickItem& one = item(name);
        EXPECT_EQ(one.mapRectToItem(&page, QRectF({}, one.size())), place) << name;
    }
};

TEST_F(InformationPlaces, TheFrameIsTheSameOnEach) {
    for (const ScreenId id : kInformation) {
        SCOPED_TRACE(ui::nameOf(id));
        show(id);
        const bool tips = id == ScreenId::SafetyTips;
        expectOnly(tips ? "orvo_all_bg.png" : "orvo_home_bg.png", {0, 0, 320, 568}, view());
        EXPECT_TRUE(placesOf(tips ? "orvo_home_bg.png" : "orvo_all_bg.png", view()).empty());
        expectOnly("orvo_contrast_tab.png", {0, 0, 320, 44}, view());
        expectOnly("orvo_home_button_back.png", {10, 10, 30, 30}, view());
        expectOnly("orvo_all_line.png", {0, 44, 320, 2}, view());
        QQuickItem& title = testing::textOf(item("screenTitle"));
        expectFont(title, "Arial", 18);
        EXPECT_NEAR(glyphsOf(title).center().x(), 160, 0.01);
        EXPECT_NEAR(glyphsOf(title).center().y(), 22, 0.01);
        EXPECT_EQ(item("screenTitle").property("color").value<QColor>().alpha(), 0);
        app().screens().dismiss(false);
        settle();
    }
}

TEST_F(InformationPlaces, AButtonOfHelpHasItsGroundItsTitleAndItsArrow) {
    show(ScreenId::Help);
    const std::pair<const char*, QString> buttons[] = {
        {"btnBluetooth", QStringLiteral("Bluetooth Connection Help")},
        {"btnSafety", QStringLiteral("Safety Tips")}};
    for (const auto& [name, shown] : buttons) {
        QQuickItem& button = item(name);
        const QRectF place = placeOf(button);
        expectOnly("orvo_imformation_bg.png", place, button);
        QQuickItem& title = textIn(button, shown);
        expectFont(title, "helvetica", 16);
        EXPECT_EQ(title.property("horizontalAlignment").toInt(), Qt::AlignLeft) << name;
        EXPECT_EQ(testing::paintedRect(title).left(), 0) << name;
        EXPECT_GE(placeOf(title).left(), 20) << name;
        const std::vector<QRectF> arrows = placesOf("orvo_cell_jian.png", button);
        ASSERT_EQ(arrows.size(), 1U) << name;
        EXPECT_EQ(arrows[0].x(), 270) << name;
        EXPECT_EQ(arrows[0].size(), QSizeF(20, 25)) << name;
        EXPECT_NEAR(arrows[0].center().y(), place.center().y(), 0.5) << name;
        EXPECT_LE(glyphsOf(title).right(), arrows[0].left()) << name;
    }
    EXPECT_EQ(placesOf("orvo_cell_jian.png", view()).size(), 2U);
}

TEST_F(InformationPlaces, TheBluetoothHelpsPictureStandsAboveItsText) {
    show(ScreenId::BluetoothConnectionHelp);
    const std::vector<QRectF> pictures = placesOf("orvo_help_blue_img2.png", view());
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_GE(pictures[0].top(), 46);
    EXPECT_GE(pictures[0].left(), 0);
    EXPECT_LE(pictures[0].right(), 320);
    QQuickItem& words = testing::textOf(item("text0"));
    EXPECT_GE(glyphsOf(words).top(), pictures[0].bottom());
    EXPECT_EQ(words.width(), 260);
    EXPECT_GT(words.property("lineCount").toInt(), 3) << "it wraps";
    EXPECT_FALSE(words.property("truncated").toBool());
}

TEST_F(InformationPlaces, TheSafetyTipsStandInTheirPlacesOnAPageThatScrolls) {
    show(ScreenId::SafetyTips);
    constexpr Placed kTips[] = {{"help_safety1.png", {8, 20, 304, 167}},
                                {"help_safety2.png", {8, 201, 304, 124}},
                                {"help_safety3.png", {8, 339, 304, 163}},
                                {"help_safety4.png", {8, 516, 304, 404}},
                                {"help_safety5.png", {8, 934, 304, 146}}};
    for (const Placed& tip : kTips)
        expectOnly(tip.picture, tip.place.translated(0, 50), view());  // the page begins there
    EXPECT_EQ(item("scrollView").property("contentWidth").toDouble(), 320);
    EXPECT_EQ(item("scrollView").property("contentHeight").toDouble(), 1180);
}

TEST_F(InformationPlaces, HowToUseShowsItsHeadingsAndPicturesOnAPageThatScrolls) {
    show(ScreenId::HowtoUse);
    EXPECT_EQ(placeOf("scrollView"), QRectF(0, 50, 320, 518));
    EXPECT_EQ(item("scrollView").property("contentWidth").toDouble(), 320);
    EXPECT_EQ(item("scrollView").property("contentHeight").toDouble(), 2500);
    const std::pair<const char*, double> headings[] = {
        {"INSULATION", 15}, {"RE", 265}, {"LOWOHM", 515}, {"V", 765}, {"LOOP/PFC", 1465}, {"RCD", 1935}};
    for (int i = 0; i < 6; ++i) {
        QQuickItem& label = item(QStringLiteral("text%1").arg(i));
        EXPECT_EQ(placeOf(label).top(), 50 + headings[i].second) << i;
        expectFont(textIn(label, QLatin1String(headings[i].first)), "Arial", 20);
        EXPECT_EQ(label.property("color").value<QColor>().alpha(), 0) << i;
    }
    constexpr double kTops[] = {40, 290, 540, 790, 1010, 1230, 1490, 1710, 1960, 2180};
    for (int i = 0; i < 10; ++i)
        expectOnPage(qPrintable(QStringLiteral("picture%1").arg(i)), {20, kTops[i], 280, 210});
    EXPECT_EQ(placesOf("Zsrcd2.png", view()),
              (std::vector<QRectF>{{20, 50 + 1710, 280, 210}, {20, 50 + 2180, 280, 210}}));
}

TEST_F(InformationPlaces, AboutShowsItsLogoAboveTheVersionAndTheVersionAboveTheLink) {
    show(ScreenId::About);
    const std::vector<QRectF> logos = placesOf("orvo_about_logo.png", view());
    ASSERT_EQ(logos.size(), 1U);
    EXPECT_EQ(logos[0], QRectF(60, 46, 200, 100)) << "under the header, in the middle";
    QQuickItem& version = textIn(item("lblVersion"), QStringLiteral("Version\uff1a1.0"));
    expectFont(version, "Helvetica", 18);
    EXPECT_EQ(version.property("horizontalAlignment").toInt(), Qt::AlignHCenter);
    const QRectF glyphs = glyphsOf(version);
    EXPECT_NEAR(glyphs.center().x(), 160, 0.01);
    EXPECT_GE(glyphs.top(), logos[0].bottom());
    EXPECT_LE(glyphs.bottom(), 170);
    const QString visit = QStringLiteral("Visit:") + productContent().webAddress;
    EXPECT_NEAR(glyphsOf(textIn(item("btnURL"), visit)).center().x(), 160, 0.01);
}

TEST_F(InformationPlaces, AVersionThatIsTooWideIsDrawnSmaller) {
    show(ScreenId::About);
    auto& label = *item("lblVersion").property("label").value<ui::Label*>();
    label.setText(QStringLiteral("Version\uff1a1.0 with much more to say"));
    settle();
    const QQuickItem& version = testing::textOf(item("lblVersion"));
    EXPECT_LE(version.property("paintedWidth").toDouble(), version.width());
    EXPECT_FALSE(version.property("truncated").toBool());
}

TEST_F(InformationPlaces, ARowOfMoreAppsHasItsPartsInTheirPlaces) {
    show(ScreenId::MoreApps);
    const auto apps = productContent().applications;
    constexpr const char* kIcons[] = {"orvo_more_app.png", "orvo_more_app2.png", "orvo_more_app3.png"};
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        QQuickItem& row = item(QStringLiteral("appRow%1").arg(i));
        const QPointF at = placeOf(row).topLeft();
        EXPECT_EQ(at, QPointF(0, 46 + 60.0 * static_cast<double>(i)));
        expectOnly(kIcons[i], {at + QPointF(10, 7), QSizeF(45, 45)}, row);
        QQuickItem& title = textIn(row, apps[i].title);
        EXPECT_EQ(placeOf(title).topLeft() - at, QPointF(65, 6));
        expectFont(title, "Arial", 12, true);
        QQuickItem& content = textIn(row, apps[i].content);
        EXPECT_EQ(placeOf(content), QRectF(at + QPointF(65, 22), QSizeF(250, 35)));
        expectFont(content, "Helvetica", 10);
        const std::vector<QRectF> arrows = placesOf("orvo_cell_jian.png", row);
        ASSERT_EQ(arrows.size(), 1U);
        EXPECT_EQ(arrows[0].x(), 290);
        EXPECT_TRUE(placeOf(row).contains(arrows[0]));
        EXPECT_EQ(content.property("lineCount").toInt(), 2) << "it wraps";
        EXPECT_FALSE(content.property("truncated").toBool());
        EXPECT_LE(glyphsOf(content).right(), arrows[0].left());
    }
}

TEST_F(InformationPlaces, AGreyLineEndsEveryRowOfMoreApps) {
    show(ScreenId::MoreApps);
    for (int i = 0; i < 3; ++i) {
        QQuickItem& row = item(QStringLiteral("appRow%1").arg(i));
        int lines = 0;
        for (QQuickItem* one : testing::itemsUnder(row)) {
            if (!one->inherits("QQuickRectangle") || !one->isVisible() || one->height() != 1) continue;
            ++lines;
            EXPECT_EQ(placeOf(*one), QRectF(0, placeOf(row).top() + 59, 320, 1)) << i;
            EXPECT_EQ(one->property("color").value<QColor>(), QColor(128, 128, 128)) << i;
        }
        EXPECT_EQ(lines, 1) << i;
    }
}

}  // namespace
}  // namespace kestrix::shell
