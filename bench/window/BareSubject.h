#pragma once

#include <QQuickItem>

#include <vector>

#include "bench/window/BareWindow.h"
#include "bench/window/Subject.h"

namespace kestrix::bench {

// Two texts in a bare window, set one after the other.
class BareSubject final : public Subject {
  public:
    BareSubject() {
        window_.show();
        texts_ = window_.items(QStringLiteral("text"));
    }

    QQuickWindow& window() override { return window_; }
    QString push(int count) override {
        while (count-- > 0) {
            ++value_;
            texts_[0]->setProperty("text", QString::number(value_ / 10.0, 'f', 1));
            texts_[1]->setProperty("text", QString::number(value_));
        }
        return shown();
    }
    QString shown() const override { return texts_[0]->property("text").toString(); }

  private:
    BareWindow window_{QStringLiteral("ChangingTexts"), {{QStringLiteral("texts"), 2}}};
    std::vector<QQuickItem*> texts_;
    int value_ = 0;
};

}  // namespace kestrix::bench
