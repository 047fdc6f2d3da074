#include "tests/support/WindowWalks.h"

#include <QAccessible>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

#include "tests/support/Contrast.h"

namespace kestrix::testing {
namespace {

constexpr double kReadable = 4.5;
constexpr double kFrameStandsOut = 3;
// The one ground that is fixed from outside: white on it has 4.47 : 1.
constexpr QRgb kLitTitle = qRgb(39, 121, 205);
constexpr double kReadableOnLitTitle = 4.4;

bool isInput(const QQuickItem& item) {
    return item.inherits("QQuickTextInput");
}

std::string textOfItem(const QQuickItem& item) {
    // Without the invisible places where its lines may break.
    return item.property("text")
        .toString()
        .remove(QChar(0x200B))
        .remove(QChar(0x2060))
        .trimmed()
        .toStdString();
}

std::string colourName(QRgb colour) {
    return QColor(colour).name().toStdString();
}

// A person knows a thing by its name; what has none, by what it is.
std::string called(const QObject& object) {
    const std::string name = object.objectName().toStdString();
    return name.empty() ? "one without a name in the code" : "'" + name + "'";
}

std::string roleInWords(QAccessibleInterface& found) {
    return qAccessibleRoleString(found.role());
}

bool isInsideList(const QQuickItem& item) {
    for (const QQuickItem* above = item.parentItem(); above != nullptr; above = above->parentItem()) {
        if (above->inherits("QQuickFlickable")) return true;
    }
    return false;
}

QRectF seenInScene(const QQuickItem& text) {
    QRectF seen = text.mapRectToScene(isInput(text) ? QRectF({}, text.size()) : paintedRect(text));
    for (const QQuickItem* above = text.parentItem(); above != nullptr; above = above->parentItem()) {
        if (above->clip()) seen &= above->mapRectToScene(QRectF({}, above->size()));
    }
    return seen;
}

// How well a text's pixels stand out from what they stand on.
struct Ink {
    bool any = false;
    double worst = 21;
    double needed = kReadable;
    QRgb worstGround = 0;
};

Ink inkIn(const QRect& area, QRgb colour, const QImage& with, const QImage& without) {
    Ink ink;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb behind = without.pixel(x, y);
            if (with.pixel(x, y) == behind) continue;
            ink.any = true;
            const double here = contrast(colour, behind);
            if (here >= ink.worst) continue;
            ink.worst = here;
            ink.worstGround = behind;
            ink.needed = (behind | 0xff000000) == kLitTitle ? kReadableOnLitTitle : kReadable;
        }
    }
    return ink;
}

void collect(QAccessibleInterface& parent, std::vector<QAccessibleInterface*>& all) {
    for (int i = 0; i < parent.childCount(); ++i) {
        QAccessibleInterface* const child = parent.child(i);
        if (child == nullptr) continue;
        all.push_back(child);
        collect(*child, all);
    }
}

}  // namespace

std::string inLines(const std::vector<std::string>& problems) {
    std::string lines;
    for (const std::string& problem : problems) lines += problem + "\n";
    return lines;
}

std::vector<QQuickItem*> WindowWalks::usableTexts() {
    std::vector<QQuickItem*> texts = itemsUnder(item("stage"));
    std::erase_if(texts, [](const QQuickItem* item) {
        const bool isText = item->inherits("QQuickText") || isInput(*item);
        return !isText || !item->isVisible() || !item->isEnabled() || textOfItem(*item).empty();
    });
    return texts;
}

void WindowWalks::leaveTheControls() {
    QQuickItem* const at = stopAtKeyboard();
    if (at != nullptr && at->activeFocusOnTab()) at->setFocus(false);
    settle();
}

WindowWalks::Problems WindowWalks::contrastProblems() {
    leaveTheControls();
    const std::vector<QQuickItem*> texts = usableTexts();
    settle();
    const QImage drawn = onDisplay();
    for (QQuickItem* text : texts) text->setOpacity(0);
    settle();
    const QImage ground = onDisplay();
    for (QQuickItem* text : texts) text->setOpacity(1);
    settle();
    Problems problems;
    for (QQuickItem* text : texts) {
        const QRgb colour = text->property("color").value<QColor>().rgb();
        const QRect area = pixelsInWindow(seenInScene(*text)) & ground.rect();
        Ink ink = inkIn(area, colour, drawn, ground);
        if (ink.worst < ink.needed) {
            // Another text may stand here, in front of it: then its own ink is what goes with it alone.
            text->setOpacity(0);
            settle();
            ink = inkIn(area, colour, drawn, onDisplay());
            text->setOpacity(1);
            settle();
        }
        std::ostringstream problem;
        problem << std::fixed << std::setprecision(1) << "the text '" << textOfItem(*text) << "' ("
                << colourName(colour) << ")";
        if (ink.worst < ink.needed) {
            problem << " on " << colourName(ink.worstGround) << " has " << std::floor(ink.worst * 10) / 10
                    << " : 1, needs " << ink.needed;
            problems.push_back(problem.str());
        } else if (!ink.any && !area.isEmpty() && !isInsideList(*text)) {
            problem << " cannot be seen";
            problems.push_back(problem.str());
        }
    }
    return problems;
}

QRect WindowWalks::pixelsInWindow(const QRectF& scene) {
    const double ratio = window().devicePixelRatio();
    return QRectF(scene.topLeft() * ratio, scene.size() * ratio).toAlignedRect();
}

std::vector<QAccessibleInterface*> WindowWalks::found() {
    std::vector<QAccessibleInterface*> all;
    collect(*QAccessible::queryAccessibleInterface(&window()), all);
    return all;
}

void WindowWalks::pressByScreenReader(const char* name) {
    QAccessibleInterface* const one = QAccessible::queryAccessibleInterface(&item(name));
    ASSERT_NE(one, nullptr) << name << " is not known to screen readers";
    ASSERT_NE(one->actionInterface(), nullptr) << name << " cannot be pressed by a screen reader";
    one->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

WindowWalks::Problems WindowWalks::accessibilityProblems() {
    settle();
    Problems problems;
    std::string said;
    for (QAccessibleInterface* one : found()) {
        const QString name = one->text(QAccessible::Name).trimmed();
        said += name.toStdString() + "\n" + one->text(QAccessible::Description).toStdString() + "\n" +
                one->text(QAccessible::Value).toStdString() + "\n";
        if (QAccessibleTextInterface* text = one->textInterface())
            said += text->text(0, text->characterCount()).toStdString() + "\n";
        const std::string what = "the " + roleInWords(*one) + " " + called(*one->object());
        if (name.isEmpty()) problems.push_back(what + " has no name for a screen reader");
        if (one->role() == QAccessible::NoRole || one->role() == QAccessible::Client)
            problems.push_back(called(*one->object()) + " has no role for a screen reader");
        const auto* shown = qobject_cast<QQuickItem*>(one->object());
        if (shown == nullptr) continue;
        if (!shown->isVisible() || !shown->isEnabled())
            problems.push_back(what + " is found by a screen reader, but it is hidden or behind something");
        else if (shown->width() * shown->height() <= 0)
            problems.push_back(what + " has no size");
    }
    for (const QQuickItem* text : usableTexts()) {
        if (said.find(textOfItem(*text)) == std::string::npos)
            problems.push_back("the text '" + textOfItem(*text) + "' is not found by a screen reader");
    }
    return problems;
}

std::vector<QQuickItem*> WindowWalks::tabStops() {
    std::vector<QQuickItem*> stops = itemsUnder(item("stage"));
    std::erase_if(stops, [](const QQuickItem* item) {
        return !item->activeFocusOnTab() || !item->isVisible() || !item->isEnabled();
    });
    return stops;
}

QQuickItem* WindowWalks::stopAtKeyboard() {
    QQuickItem* const active = window().activeFocusItem();
    for (QQuickItem* at = active; at != nullptr; at = at->parentItem()) {
        if (at->activeFocusOnTab()) return at;
    }
    return active;
}

WindowWalks::Problems WindowWalks::frameProblems(const QImage& without) {
    QQuickItem* const at = stopAtKeyboard();
    std::vector<QQuickItem*> frames = itemsUnder(item("stage"));
    std::erase_if(frames, [](const QQuickItem* one) {
        return one->objectName() != QStringLiteral("focusFrame") || !one->isVisible();
    });
    if (frames.size() != 1)
        return {called(*at) + " has the keyboard, but " + std::to_string(frames.size()) +
                " frames show where it is"};
    settle();
    const QImage with = onDisplay();
    const QRect frame = pixelsOf(placeOf(*frames.front())) & with.rect();
    int places = 0;
    int seen = 0;
    const auto look = [&](QPoint pixel, QPoint inward) {
        const double best = std::max(contrast(with.pixel(pixel), without.pixel(pixel)),
                                     contrast(with.pixel(pixel + inward), without.pixel(pixel + inward)));
        ++places;
        seen += best >= kFrameStandsOut ? 1 : 0;
    };
    for (int x = frame.left() + 2; x < frame.right() - 2; ++x) {
        look({x, frame.top()}, {0, 1});
        look({x, frame.bottom()}, {0, -1});
    }
    for (int y = frame.top() + 2; y < frame.bottom() - 2; ++y) {
        look({frame.left(), y}, {1, 0});
        look({frame.right(), y}, {-1, 0});
    }
    // It may cross a glyph or a picture.
    constexpr double kMostOfIt = 0.9;
    if (seen >= kMostOfIt * places) return {};
    return {"the frame around " + called(*at) + " does not stand out"};
}

WindowWalks::Problems WindowWalks::keyProblems() {
    leaveTheControls();
    Problems problems;
    const std::vector<QQuickItem*> stops = tabStops();
    const QImage without = onDisplay();
    std::vector<QQuickItem*> reached;
    for (std::size_t press = 0; press < stops.size(); ++press) {
        pressKey(Qt::Key_Tab);
        QQuickItem* const at = stopAtKeyboard();
        if (at == nullptr) {
            problems.emplace_back("Tab leads to nothing");
            break;
        }
        if (std::find(reached.begin(), reached.end(), at) != reached.end()) break;
        const QRectF place = placeOf(*at);
        if (!reached.empty() && place.bottom() <= placeOf(*reached.back()).top() + 1)
            problems.push_back("Tab goes up from " + called(*reached.back()) + " to " + called(*at));
        reached.push_back(at);
        QAccessibleInterface* const known = QAccessible::queryAccessibleInterface(at);
        if (known == nullptr || !known->state().focused || !known->state().focusable)
            problems.push_back(called(*at) + " has the keyboard, but a screen reader is not told so");
        const Problems frames = frameProblems(without);
        problems.insert(problems.end(), frames.begin(), frames.end());
    }
    for (const QQuickItem* stop : stops) {
        if (std::find(reached.begin(), reached.end(), stop) == reached.end())
            problems.push_back("Tab does not reach " + called(*stop));
    }
    if (!reached.empty()) {
        pressKey(Qt::Key_Tab);
        if (stopAtKeyboard() != reached.front())
            problems.push_back("Tab does not begin anew behind " + called(*reached.back()));
    }
    return problems;
}

void WindowWalks::keepPictures(const char* name) {
    const QString pictures = qEnvironmentVariable("KESTRIX_PICTURES");
    if (pictures.isEmpty()) return;
    for (const int scale : {3, 1}) {
        resize(kSmall * scale);
        onDisplay().save(QStringLiteral("%1/%2-%3x.png").arg(pictures, QLatin1String(name)).arg(scale));
    }
}

WindowWalks::Problems WindowWalks::allProblems() {
    Problems all;
    for (const int scale : {3, 1}) {
        resize(kSmall * scale);
        const Problems unreadable = contrastProblems();
        all.insert(all.end(), unreadable.begin(), unreadable.end());
    }
    for (const Problems& problems : {accessibilityProblems(), keyProblems()})
        all.insert(all.end(), problems.begin(), problems.end());
    return all;
}

}  // namespace kestrix::testing
