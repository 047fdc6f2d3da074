#pragma once

#include <QPoint>
#include <QQuickItem>

#include "bench/window/Application.h"
#include "bench/window/Subject.h"
#include "simulator/Player.h"
#include "tests/support/FakeSource.h"

namespace kestrix::bench {

// The application; a value is a frame of a tester that was found, with both readings changed.
class KestrixSubject final : public Subject {
  public:
    KestrixSubject();

    QQuickWindow& window() override { return application_.window(); }
    QString push(int count) override;
    QString shown() const override { return text_->property("text").toString(); }

    live::MainViewController& screen() { return application_.delegate().mainView(); }
    QPoint recordButton();  // its middle, in the window

  private:
    QQuickItem& item(const char* name);

    simulator::Player player_;
    Application application_{{}};
    testing::FakeSource* tester_;  // belongs to the application
    QQuickItem* text_;
};

}  // namespace kestrix::bench
