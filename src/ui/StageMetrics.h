#pragma once

#include <QObject>
#include <QSizeF>
#include <QString>
#include <QUrl>

namespace kestrix::ui {

// How the stage on which every screen stands, 320 points wide and at least 480 high, is fitted into the
// window: as large as both allow, and centred on a window that is wider than it. One a process.
class StageMetrics : public QObject {
    Q_OBJECT
    Q_PROPERTY(double factor READ factor NOTIFY changed FINAL)
    Q_PROPERTY(double left READ left NOTIFY changed FINAL)
    Q_PROPERTY(double height READ height NOTIFY changed FINAL)
    Q_PROPERTY(int pictureScale READ pictureScale NOTIFY changed FINAL)
    Q_PROPERTY(double line READ line NOTIFY changed FINAL)

  public:
    static constexpr double kWidth = 320;
    static constexpr double kLeastHeight = 480;
    static constexpr int kLargestPictureScale = 4;  // pictures are drawn at the scales 1 to this

    static StageMetrics& shared();

    // window: its size in device-independent pixels; devicePixelRatio: real pixels in one of them. Nothing
    // happens when both are what they were.
    void fit(const QSizeF& window, double devicePixelRatio);

    double factor() const { return factor_; }  // device-independent pixels in a point
    double left() const { return left_; }      // of the stage in the window, in device-independent pixels
    double height() const { return height_; }  // in points
    int pictureScale() const { return pictureScale_; }
    // How thick a line of one point is drawn, in points: whole pixels, or lines would differ from each other.
    double line() const { return line_; }

    // The picture of this name, drawn for `scale` pixels a point; the empty URL for no name.
    Q_INVOKABLE QUrl picture(const QString& name, int scale) const;

  Q_SIGNALS:
    void changed();

  private:
    QSizeF window_;
    double devicePixelRatio_ = 0;
    double factor_ = 1;
    double left_ = 0;
    double height_ = kLeastHeight;
    int pictureScale_ = 1;
    double line_ = 1;
};

}  // namespace kestrix::ui
