#pragma once

#include <QRectF>
#include <QVariantList>

#include <memory>
#include <vector>

#include "ui/FramedScreen.h"

namespace kestrix::shell {

// Where on its page a picture or a text stands, in points of what scrolls.
struct PlacedPicture {
    Q_GADGET
    Q_PROPERTY(kestrix::ui::ImageView* imageView MEMBER imageView CONSTANT FINAL)
    Q_PROPERTY(QRectF place MEMBER place CONSTANT FINAL)

  public:
    ui::ImageView* imageView = nullptr;  // the page's
    QRectF place;
};

struct PlacedText {
    Q_GADGET
    Q_PROPERTY(kestrix::ui::Label* label MEMBER label CONSTANT FINAL)
    Q_PROPERTY(QRectF place MEMBER place CONSTANT FINAL)
    Q_PROPERTY(bool heading MEMBER heading CONSTANT FINAL)

  public:
    ui::Label* label = nullptr;  // the page's
    QRectF place;
    bool heading = false;
};

// A screen of pictures and texts below each other, higher than the window. The keys scroll it wherever on it
// the keyboard is.
class PicturePage : public kestrix::ui::FramedScreen {
    Q_OBJECT
    Q_PROPERTY(QVariantList pictures READ picturesForView CONSTANT FINAL)
    Q_PROPERTY(QVariantList texts READ textsForView CONSTANT FINAL)

  public:
    using FramedScreen::FramedScreen;

    bool pressKey(int key, int modifiers, bool repeated) override;

    const std::vector<PlacedPicture>& pictures() const { return pictures_; }
    const std::vector<PlacedText>& texts() const { return texts_; }

    ui::ScrollArea scrollView{*this, "scrollView"};

  protected:
    // What a picture shows: its name and, in words, what one learns from it.
    struct Told {
        QString name;
        QString description;
    };
    // image: of the artwork, "flash.png". The control bears its name and its number among the page's
    // pictures.
    void addPicture(const char* image, const QRectF& place, const Told& told);
    ui::Label& addText(const QString& text, const QRectF& place, bool heading);

  private:
    QVariantList picturesForView() const;
    QVariantList textsForView() const;

    std::vector<std::unique_ptr<ui::Control>> controls_;
    std::vector<PlacedPicture> pictures_;
    std::vector<PlacedText> texts_;
};

}  // namespace kestrix::shell
