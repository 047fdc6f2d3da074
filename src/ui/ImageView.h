#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

#include "platform/Scheduler.h"
#include "ui/Control.h"

namespace kestrix::ui {

// A picture of the artwork by its name, or a sequence of them in time.
class ImageView : public kestrix::ui::Control {
    Q_OBJECT
    Q_PROPERTY(QString shownImage READ shownImage NOTIFY shownImageChanged FINAL)
    Q_PROPERTY(QString description READ description CONSTANT FINAL)

  public:
    // scheduler: for the animation; none for a picture that stands still. Not owned.
    ImageView(Screen& screen, const char* name, platform::Scheduler* scheduler = nullptr)
        : Control(screen, name), scheduler_(scheduler) {}

    // What is to be seen on it, for a screen reader, where a name does not say all. To be set before it is
    // shown.
    QString description() const { return description_; }
    void setDescription(const QString& description) { description_ = description; }

    // The picture while nothing is animated.
    QString image() const { return image_; }
    void setImage(const QString& name);

    // One cycle shows every picture once in `duration`. repeatCount 0: without end. An animation that runs
    // begins anew with these; without pictures, or without a duration, there is none.
    QStringList animationImages() const { return images_; }
    std::chrono::milliseconds animationDuration() const { return duration_; }
    int animationRepeatCount() const { return repeatCount_; }
    void setAnimation(const QStringList& images, std::chrono::milliseconds duration, int repeatCount);

    // Begins with the first picture; does nothing while it runs, and where there is nothing to animate.
    void startAnimating();
    void stopAnimating();
    bool isAnimating() const { return animating_; }

    // What is to be seen: the animation's picture while it runs, else the picture.
    QString shownImage() const { return animating_ ? images_.at(frame_ % images_.size()) : image_; }

  Q_SIGNALS:
    void shownImageChanged();

  protected:
    bool tell() override;

  private:
    void showNextFrame();
    void awaitNextFrame();

    platform::Scheduler* scheduler_;
    QString description_;
    QString image_;
    QString toldImage_;
    QStringList images_;
    std::chrono::milliseconds duration_{0};
    int repeatCount_ = 0;
    bool animating_ = false;
    qsizetype frame_ = 0;  // since the start
    platform::Scheduler::TimePoint started_;
    platform::Scheduler::Timer timer_;
};

}  // namespace kestrix::ui
