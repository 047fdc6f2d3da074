// The pictures as a program carries them: their sizes, what stretching and text need of them, the animation.
#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QImage>
#include <QRect>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>

#include "artwork/Pictures.h"

namespace kestrix::artwork {
namespace {

constexpr std::array kScales{1, 2, 3, 4};
constexpr int kFrames = 6;

struct Drawn {
    const char* name;
    QSize points;
};

constexpr Drawn kDrawn[] = {
    {"background", {8, 64}},
    {"background.PNG", {8, 160}},
    {"flash", {25, 25}},
    {"kestrix", {64, 64}},
    {"orvo_all_bg", {8, 530}},
    {"orvo_all_line", {8, 2}},
    {"orvo_cell_jian", {20, 25}},
    {"orvo_contrast_tab", {8, 44}},
    {"orvo_home_bg", {8, 530}},
    {"orvo_home_blue_bg.9", {36, 36}},
    {"orvo_home_button_back", {30, 30}},
    {"orvo_home_button_share", {30, 30}},
    {"orvo_home_button_history", {30, 30}},
    {"orvo_home_button_information", {30, 30}},
    {"orvo_home_button_record", {102, 56}},
    {"orvo_home_button_record_pressed", {102, 56}},
    {"orvo_home_button_save", {30, 30}},
    {"orvo_home_left_back", {30, 30}},
    {"orvo_home_lightning_l1", {40, 121}},
    {"orvo_home_lightning_l2", {40, 121}},
    {"orvo_home_lightning_l3", {40, 121}},
    {"orvo_home_lightning_l4", {40, 121}},
    {"orvo_home_lightning_l5", {40, 121}},
    {"orvo_home_lightning_l6", {40, 121}},
    {"orvo_home_lightning_r1", {40, 121}},
    {"orvo_home_lightning_r2", {40, 121}},
    {"orvo_home_lightning_r3", {40, 121}},
    {"orvo_home_lightning_r4", {40, 121}},
    {"orvo_home_lightning_r5", {40, 121}},
    {"orvo_home_lightning_r6", {40, 121}},
    {"orvo_home_tab_down_bg.9", {24, 60}},
    {"orvo_scenario_details_button", {45, 20}},
    {"orvo_imformation_bg", {280, 40}},
    {"orvo_more_app", {45, 45}},
    {"orvo_more_app2", {45, 45}},
    {"orvo_more_app3", {45, 45}},
};

// Kept at the largest scale alone.
constexpr Drawn kLessons[] = {
    {"orvo_about_logo", {200, 100}}, {"orvo_help_blue_img2", {280, 170}},
    {"help_safety1", {304, 167}},    {"help_safety2", {304, 124}},
    {"help_safety3", {304, 163}},    {"help_safety4", {304, 404}},
    {"help_safety5", {304, 146}},    {"insulation", {280, 210}},
    {"re_tur", {280, 210}},          {"continuity", {280, 210}},
    {"voltage1", {280, 210}},        {"voltage2", {280, 210}},
    {"voltage3", {280, 210}},        {"Zsrcd", {280, 210}},
    {"Zsrcd2", {280, 210}},
};

constexpr const char* kConnections[] = {"insulation", "re_tur",   "continuity", "voltage1",
                                        "voltage2",   "voltage3", "Zsrcd",      "Zsrcd2"};

// A picture that is stretched: inside `middle` it may not change along the stretched direction. The middle is
// counted with the point beside it, which smooth stretching mixes in.
struct Stretched {
    const char* name;
    QRect middle;  // points
    bool down;     // across always
};

constexpr Stretched kStretched[] = {
    {"orvo_contrast_tab", {0, 0, 8, 44}, false},
    {"orvo_all_line", {0, 0, 8, 2}, false},
    {"orvo_home_bg", {0, 0, 8, 530}, false},
    {"orvo_home_blue_bg.9", {11, 11, 14, 14}, true},
    {"background", {0, 39, 8, 25}, true},
    {"background.PNG", {0, 0, 8, 160}, true},
    {"orvo_home_tab_down_bg.9", {7, 7, 10, 53}, true},
    {"orvo_imformation_bg", {11, 0, 258, 40}, false},
};

constexpr QRgb kWhite = 0xffffffff;
constexpr QRgb kInk = 0xff10182a;

struct TextGround {
    const char* name;
    QRect area;  // points
    QRgb text;
};

constexpr TextGround kTextGrounds[] = {
    {"orvo_contrast_tab", {0, 0, 8, 44}, kWhite},
    {"orvo_home_bg", {0, 0, 8, 530}, kWhite},
    {"orvo_all_bg", {0, 0, 8, 530}, kWhite},
    {"orvo_home_blue_bg.9", {12, 12, 12, 12}, kWhite},
    {"background", {0, 0, 8, 31}, kWhite},
    {"background", {0, 31, 8, 33}, kInk},
    {"orvo_scenario_details_button", {10, 2, 31, 16}, kWhite},
    {"orvo_imformation_bg", {12, 2, 256, 34}, kWhite},
};

QImage picture(const std::string& name, int scale) {
    load();
    QString file = QString::fromStdString(name);
    if (!file.endsWith(QStringLiteral(".PNG"))) file += QStringLiteral(".png");
    const QImage image = artwork::picture(file, scale);
    EXPECT_FALSE(image.isNull()) << name << " at " << scale;
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

std::string lightning(char side, int frame) {
    return std::string("orvo_home_lightning_") + side + std::to_string(frame);
}

QRect scaled(const QRect& points, int scale) {
    return {points.topLeft() * scale, points.size() * scale};
}

// Whether every pixel of the image inside the area is as `right` says.
template <typename Right>
bool everywhere(const QImage& image, const QRect& area, Right right) {
    if (!image.rect().contains(area)) return false;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (!right(x, y)) return false;
        }
    }
    return true;
}

double luminance(QRgb colour) {
    const auto linear = [](int level) {
        const double v = level / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

// Contrast ratio of two opaque colours, 1 to 21.
double contrast(QRgb a, QRgb b) {
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

int difference(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
}

// The greatest difference of two pictures of one size, 0 to 255.
int difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 255;
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            greatest = std::max(greatest, difference(a.pixel(x, y), b.pixel(x, y)));
    }
    return greatest;
}

// The row, in pixels, with the brightest pixel that hides what is behind it.
int brightestRow(const QImage& image) {
    int brightest = -1;
    int row = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 255 && qGray(pixel) > brightest) {
                brightest = qGray(pixel);
                row = y;
            }
        }
    }
    return row;
}

TEST(Artwork, EveryPictureHasItsSizeAtEveryScale) {
    for (const int scale : kScales) {
        for (const Drawn& drawn : kDrawn) {
            EXPECT_EQ(picture(drawn.name, scale).size(), drawn.points * scale)
                << drawn.name << " at " << scale;
        }
        for (const Drawn& drawn : kLessons) {
            EXPECT_EQ(picture(drawn.name, scale).size(), drawn.points * scale)
                << drawn.name << " at " << scale;
        }
    }
}

TEST(Artwork, NoPictureIsCarriedThatIsNotInTheTableHere) {
    load();
    EXPECT_EQ(QDir(QStringLiteral(":/artwork")).entryList().size(), qsizetype{kScales.size()});
    for (const int scale : kScales) {
        const std::size_t lessons = scale == kScales.back() ? std::size(kLessons) : 0;
        EXPECT_EQ(QDir(QStringLiteral(":/artwork/%1").arg(scale)).entryList().size(),
                  static_cast<qsizetype>(std::size(kDrawn) + lessons));
    }
}

TEST(Artwork, OneTesterStandsInEveryConnectionPicture) {
    // Below its display, where no picture writes anything: it comes from the file that they share.
    const QRect knobAndButton(12, 108, 56, 50);
    const QImage first = picture(kConnections[0], 4).copy(scaled(knobAndButton, 4));
    EXPECT_GT(difference(first.copy(0, 0, 1, 200), first.copy(112, 0, 1, 200)), 100) << "no knob";
    for (const char* name : kConnections)
        EXPECT_EQ(difference(picture(name, 4).copy(scaled(knobAndButton, 4)), first), 0) << name;
}

TEST(Artwork, NoWordComesNearTheRightEdgeOfItsPicture) {
    // A word that is too long, or drawn in a wider font than it was written for, would.
    constexpr QRgb kPaper = 0xfff3f6fb;
    constexpr QRgb kDisplay = 0xff182441;
    const auto isPlain = [](const char* name, const QRect& edge, QRgb ground) {
        const QImage image = picture(name, 4);
        return everywhere(image, scaled(edge, 4), [&](int x, int y) { return image.pixel(x, y) == ground; });
    };
    for (const char* name : kConnections) EXPECT_TRUE(isPlain(name, {273, 169, 6, 32}, kPaper)) << name;
    for (const Drawn& drawn : kLessons) {
        if (!QByteArray(drawn.name).startsWith("help_safety")) continue;
        EXPECT_TRUE(isPlain(drawn.name, {295, 12, 7, drawn.points.height() - 24}, kDisplay)) << drawn.name;
    }
}

TEST(Artwork, NoTwoConnectionPicturesAreAlike) {
    for (const char* one : kConnections) {
        for (const char* other : kConnections) {
            if (one == other) break;
            EXPECT_GT(difference(picture(one, 1), picture(other, 1)), 100) << one << " and " << other;
        }
    }
}

TEST(Artwork, APictureThatDoesNotExistIsNone) {
    load();
    for (const int scale : {0, 1, 4, 5})
        EXPECT_TRUE(artwork::picture(QStringLiteral("nothing.png"), scale).isNull()) << scale;
    EXPECT_TRUE(artwork::picture(QStringLiteral("insulation.png"), 5).isNull());
}

TEST(Artwork, StretchingIsInvisible) {
    for (const int scale : kScales) {
        for (const Stretched& stretched : kStretched) {
            const QImage image = picture(stretched.name, scale);
            const QRect middle = scaled(stretched.middle, scale);
            const QRect columns(middle.left(), 0, middle.width(), image.height());
            const QRect rows(0, middle.top(), image.width(), middle.height());
            EXPECT_TRUE(
                everywhere(image, columns,
                           [&](int x, int y) { return image.pixel(x, y) == image.pixel(middle.left(), y); }))
                << stretched.name << " across, at " << scale;
            EXPECT_TRUE(
                !stretched.down ||
                everywhere(image, rows,
                           [&](int x, int y) { return image.pixel(x, y) == image.pixel(x, middle.top()); }))
                << stretched.name << " down, at " << scale;
        }
    }
}

TEST(Artwork, BlackAndWhiteContrastIsTwentyOne) {
    EXPECT_NEAR(contrast(kWhite, 0xff000000), 21.0, 1e-9);
    EXPECT_NEAR(contrast(0xff767676, kWhite), 4.54, 0.005);
}

TEST(Artwork, TextStandsOutOnEveryPixelOfItsGround) {
    for (const int scale : kScales) {
        for (const TextGround& ground : kTextGrounds) {
            const QImage image = picture(ground.name, scale);
            EXPECT_TRUE(everywhere(image, scaled(ground.area, scale),
                                   [&](int x, int y) {
                                       return qAlpha(image.pixel(x, y)) == 255 &&
                                              contrast(image.pixel(x, y), ground.text) >= 4.5;
                                   }))
                << ground.name << " at " << scale;
        }
    }
}

TEST(Artwork, BackgroundsHideWhatIsBehindThem) {
    for (const int scale : kScales) {
        for (const char* name : {"orvo_contrast_tab", "orvo_all_line", "orvo_home_bg", "background",
                                 "orvo_home_tab_down_bg.9"}) {
            const QImage image = picture(name, scale);
            EXPECT_TRUE(everywhere(image, image.rect(),
                                   [&](int x, int y) { return qAlpha(image.pixel(x, y)) == 255; }))
                << name << " at " << scale;
        }
    }
}

TEST(Artwork, ThePanelIsRound) {
    for (const int scale : kScales) {
        const QImage panel = picture("orvo_home_blue_bg.9", scale);
        for (const QRect& corner :
             {QRect(0, 0, 4, 4), QRect(32, 0, 4, 4), QRect(0, 32, 4, 4), QRect(32, 32, 4, 4)}) {
            EXPECT_TRUE(everywhere(panel, scaled(corner, scale),
                                   [&](int x, int y) { return qAlpha(panel.pixel(x, y)) == 0; }))
                << "at " << scale;
        }
    }
}

TEST(Artwork, TheLightRunsDownTheBoltByASixthInEachFrame) {
    for (const int scale : kScales) {
        for (int frame = 2; frame <= kFrames; ++frame) {
            const double expected = 121.0 * (frame - 1) / kFrames;
            EXPECT_NEAR(brightestRow(picture(lightning('l', frame), scale)) / static_cast<double>(scale),
                        expected, 3.0)
                << "frame " << frame << " at " << scale;
        }
    }
}

TEST(Artwork, NoTwoFramesOfTheLightningAreAlike) {
    for (int one = 1; one <= kFrames; ++one) {
        for (int other = one + 1; other <= kFrames; ++other) {
            EXPECT_GT(difference(picture(lightning('l', one), 1), picture(lightning('l', other), 1)), 100)
                << one << " and " << other;
        }
    }
}

TEST(Artwork, TheRightLightningIsTheLeftOneMirrored) {
    // Edges fall between pixels, and are rounded a little differently from the other side.
    constexpr int kRounding = 8;
    for (const int scale : kScales) {
        for (int frame = 1; frame <= kFrames; ++frame) {
            const QImage left = picture(lightning('l', frame), scale);
            EXPECT_LE(difference(left.mirrored(true, false), picture(lightning('r', frame), scale)),
                      kRounding)
                << "frame " << frame << " at " << scale;
        }
    }
}

TEST(Artwork, TheBoltKeepsClearOfTheWarningSign) {
    // The sign stands at 32, 66 of the screen, the bolt's picture at 0, 52.
    const QRect sign(32, 14, 8, 25);
    for (const int scale : kScales) {
        for (int frame = 1; frame <= kFrames; ++frame) {
            const QImage bolt = picture(lightning('l', frame), scale);
            EXPECT_TRUE(everywhere(bolt, scaled(sign, scale),
                                   [&](int x, int y) { return qAlpha(bolt.pixel(x, y)) < 64; }))
                << "frame " << frame << " at " << scale;
        }
    }
}

TEST(Artwork, APressedRecordButtonLooksPressed) {
    const QImage released = picture("orvo_home_button_record", 1);
    const QImage pressed = picture("orvo_home_button_record_pressed", 1);
    EXPECT_LT(luminance(pressed.pixel(20, 28)), luminance(released.pixel(20, 28)) / 2);
}

}  // namespace
}  // namespace kestrix::artwork
