#pragma once

#include <QEventLoop>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <vector>

#include "bench/window/Figures.h"
#include "bench/window/Subject.h"

namespace kestrix::bench {

// Pushes values into a display at a steady rate, from the event loop, and takes the time until each stands in
// a picture.
class Latency : public QObject {
  public:
    // Every `period`, `values` are handed over, `pushes` times.
    Latency(Subject& subject, std::chrono::milliseconds period, int values, int pushes);

    // Runs the event loop until every push was shown. Ends the program when one is not within ten seconds.
    void run();

    // Milliseconds, one a push: until the first picture that shows it or a later one.
    const std::vector<double>& untilShown() const { return untilShown_; }
    // Milliseconds, one a push: how late it came, and how long an event waited that was posted with it.
    const std::vector<double>& lateness() const { return lateness_; }
    const std::vector<double>& eventWaits() const { return eventWaits_; }
    double picturesPerSecond() const;

  private:
    void pushWhatIsDue();
    void pictureDrawn();

    Subject& subject_;
    std::chrono::milliseconds period_;
    int values_;
    int pushes_;
    QEventLoop loop_;  // quitting the application would close the window
    QTimer timer_;
    Clock::time_point start_;
    Clock::time_point end_;
    int pictures_ = 0;
    std::vector<Clock::time_point> pushTimes_;
    QHash<QString, int> pushOfText_;
    std::vector<double> untilShown_;
    std::vector<double> lateness_;
    std::vector<double> eventWaits_;
};

}  // namespace kestrix::bench
