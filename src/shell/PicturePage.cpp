#include "shell/PicturePage.h"

#include <QString>

#include "ui/Palette.h"

namespace kestrix::shell {
namespace {

template <class Placed>
QVariantList asVariants(const std::vector<Placed>& all) {
    QVariantList variants;
    for (const Placed& one : all) variants << QVariant::fromValue(one);
    return variants;
}

}  // namespace

bool PicturePage::pressKey(int key, int modifiers, bool repeated) {
    return scrollView.pressKey(key, modifiers, repeated) || FramedScreen::pressKey(key, modifiers, repeated);
}

void PicturePage::addPicture(const char* image, const QRectF& place, const Told& told) {
    const QByteArray name = QByteArray("picture") + QByteArray::number(pictures_.size());
    auto picture = std::make_unique<ui::ImageView>(*this, name.constData());
    picture->setImage(QLatin1String(image));
    picture->setAccessibleName(told.name);
    picture->setDescription(told.description);
    pictures_.push_back({picture.get(), place});
    controls_.push_back(std::move(picture));
}

ui::Label& PicturePage::addText(const QString& text, const QRectF& place, bool heading) {
    const QByteArray name = QByteArray("text") + QByteArray::number(texts_.size());
    auto label = std::make_unique<ui::Label>(*this, name.constData());
    label->setText(text);
    label->setTextColor(ui::Palette::textOnDark);
    ui::Label& added = *label;
    texts_.push_back({&added, place, heading});
    controls_.push_back(std::move(label));
    return added;
}

QVariantList PicturePage::picturesForView() const {
    return asVariants(pictures_);
}

QVariantList PicturePage::textsForView() const {
    return asVariants(texts_);
}

}  // namespace kestrix::shell
