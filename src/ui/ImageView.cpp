#include "ui/ImageView.h"

#include <algorithm>

namespace kestrix::ui {

using std::chrono::milliseconds;

void ImageView::setImage(const QString& name) {
    image_ = name;
    changed();
}

void ImageView::setAnimation(const QStringList& images, milliseconds duration, int repeatCount) {
    images_ = images;
    duration_ = duration;
    repeatCount_ = repeatCount;
    if (!animating_) return;
    stopAnimating();
    startAnimating();
}

void ImageView::startAnimating() {
    if (animating_ || images_.isEmpty() || duration_ <= milliseconds(0) || scheduler_ == nullptr) return;
    animating_ = true;
    frame_ = 0;
    started_ = scheduler_->now();
    awaitNextFrame();
    changed();
}

void ImageView::stopAnimating() {
    if (!animating_) return;
    animating_ = false;
    timer_.cancel();
    changed();
}

bool ImageView::tell() {
    bool told = Control::tell();
    told |= tellChange(*this, toldImage_, shownImage(), &ImageView::shownImageChanged);
    return told;
}

void ImageView::showNextFrame() {
    // A late call does not make the animation late: the time says which frame it is.
    const auto elapsed = std::chrono::duration_cast<milliseconds>(scheduler_->now() - started_);
    frame_ = std::max(frame_ + 1, static_cast<qsizetype>(elapsed * images_.size() / duration_));
    if (repeatCount_ > 0 && frame_ >= images_.size() * repeatCount_) return stopAnimating();
    awaitNextFrame();
    changed();
}

void ImageView::awaitNextFrame() {
    // Rounded up, so that the frame is due when the call comes.
    const milliseconds due = (duration_ * (frame_ + 1) + milliseconds(images_.size() - 1)) / images_.size();
    const auto left = std::chrono::duration_cast<milliseconds>(started_ + due - scheduler_->now());
    timer_ = scheduler_->callAfter(std::max(left, milliseconds(0)), [this] { showNextFrame(); });
}

}  // namespace kestrix::ui
