// The stage in windows of every size, and how sharp it is. Run at several pixels to the point.
#include <QtMath>

#include "artwork/Pictures.h"
#include "tests/shell/Scenarios.h"
#include "tests/shell/TestScreen.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

class Stage : public testing::WindowFixture {
  protected:
    // Of the stage, in the window.
    QRectF stage() {
        QQuickItem& points = item("points");
        return points.mapRectToScene(QRectF(QPointF(), points.size()));
    }
    int pictureScale() {
        const QString path = item("toolbarLine").property("source").toUrl().path();
        return path.section(u'/', -2, -2).toInt();
    }
    TestScreen::Log log_ = std::make_shared<std::string>();  // of a presented screen
    double pixelsToThePoint() { return stage().width() / 320 * window().devicePixelRatio(); }
};

constexpr double kRounding = 0.001;  // scales are single precision
constexpr QSize kSizes[] = {{320, 568}, {384, 682},  {960, 1706}, {1200, 700}, {160, 240},
                            {517, 733}, {1001, 479}, {320, 1200}, {161, 900},  {640, 960}};

TEST_F(Stage, TheWindowHasAsManyPixelsToThePointAsItWasToldTo) {
    open();
    const double told =
        qEnvironmentVariableIsSet("QT_SCALE_FACTOR") ? qgetenv("QT_SCALE_FACTOR").toDouble() : 1;
    EXPECT_EQ(window().devicePixelRatio(), told);
    EXPECT_EQ(onDisplay().size(), QSizeF(320 * told, 568 * told).toSize());
}

TEST_F(Stage, AnyWindowHoldsTheWholeStageInTheMiddle) {
    open();
    for (const QSize& size : kSizes) {
        SCOPED_TRACE(std::to_string(size.width()) + " x " + std::to_string(size.height()));
        resize(size);
        const QRectF place = stage();
        EXPECT_EQ(item("points").width(), 320);
        EXPECT_GE(item("points").height(), 480 - kRounding);
        EXPECT_GE(place.left(), 0);
        EXPECT_LE(place.right(), size.width() + kRounding);
        EXPECT_EQ(place.top(), 0);
        EXPECT_NEAR(place.bottom(), size.height(), kRounding);
        EXPECT_NEAR(place.left(), size.width() - place.right(), 2);
        // As large as it can be: it fills the width, or is as low as it may be.
        const bool fillsTheWidth = std::abs(place.width() - size.width()) < kRounding;
        EXPECT_TRUE(fillsTheWidth || std::abs(item("points").height() - 480) < kRounding);
        const double left = place.left() * window().devicePixelRatio();
        EXPECT_NEAR(left, qRound(left), kRounding) << "between two pixels";
    }
}

TEST_F(Stage, BesideTheStageNothingIsDrawn) {
    start();
    TestScreen::registerAs(ui::ScreenId::SaveData, app().screens(), log_);
    open({1200, 700});
    showReading(kLowOhm);
    app().screens().present(ui::ScreenId::SaveData, false);
    settle();
    const QImage display = onDisplay();
    const QRect inside = pixelsOf({0, 0, 320, item("points").height()});
    for (int y = 0; y < display.height(); y += 7) {
        for (int x = 0; x < display.width(); ++x) {
            if (x >= inside.left() && x <= inside.right()) continue;
            ASSERT_EQ(display.pixel(x, y), qRgb(14, 22, 38)) << x << ", " << y;
        }
    }
}

TEST_F(Stage, PicturesAreAsSharpAsTheWindowNeedsThem) {
    open();
    for (const QSize& size : kSizes) {
        resize(size);
        const int wanted = std::clamp(qCeil(pixelsToThePoint() - 0.1), 1, 4);
        EXPECT_EQ(pictureScale(), wanted) << size.width() << " x " << size.height();
    }
}

TEST_F(Stage, AtAWholeScaleAPictureIsDrawnPixelByPixel) {
    open();
    for (const int scale : {1, 2, 3, 4}) {
        const double width = 320 * scale / window().devicePixelRatio();
        if (width != qRound(width)) continue;  // no window is so wide
        resize({qRound(width), qRound(width * 1.6)});
        const QRect place = pixelsOf(placeOf("btnRecord"));
        const QImage drawn = onDisplay().copy(place);
        const QImage picture = artwork::picture(QStringLiteral("orvo_home_button_record.png"), scale);
        ASSERT_EQ(drawn.size(), picture.size());
        int opaque = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (qAlpha(picture.pixel(x, y)) < 255) continue;
                ++opaque;
                const QRgb one = drawn.pixel(x, y);
                const QRgb other = picture.pixel(x, y);
                ASSERT_LE(std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
                              std::abs(qBlue(one) - qBlue(other)),
                          3)
                    << x << ", " << y << " at " << scale;
            }
        }
        EXPECT_GT(opaque, 1000);
    }
}

TEST_F(Stage, ANinePatchKeepsItsBorderAtEverySize) {
    open();
    for (const QSize& size : kSizes) {
        resize(size);
        for (const char* name : {"displayPanel", "listBackground"}) {
            QQuickItem& picture = *item(name).childItems().constFirst();
            EXPECT_EQ(placeOf(picture), placeOf(name)) << name;
            EXPECT_NEAR(picture.scale() * pictureScale(), 1, kRounding) << name;
        }
    }
}

TEST_F(Stage, APressFindsItsButtonInAWindowOfAnySize) {
    open();
    showReading(kEarth);
    int rows = 0;
    for (const QSize& size : kSizes) {
        resize(size);
        click("btnRecord");
        EXPECT_EQ(screen().dataList()->count(), ++rows) << size.width() << " x " << size.height();
    }
}

}  // namespace
}  // namespace kestrix::shell
