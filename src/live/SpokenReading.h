#pragma once

#include <QString>

#include <functional>
#include <utility>

#include "display/Display.h"
#include "ui/Control.h"

namespace kestrix::live {

// What the display shows, in words: its function, its readings, the warning.
QString inWords(const display::Display& display);

// The whole display in words, for a screen reader: as it is whenever it is asked for.
class SpokenReading : public kestrix::ui::Control {
    Q_OBJECT
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)

  public:
    SpokenReading(ui::Screen& screen, const char* name, std::function<QString()> words)
        : Control(screen, name), words_(std::move(words)) {}

    QString text() const { return words_(); }
    // The display may say something else now.
    void refresh() { changed(); }

  Q_SIGNALS:
    void textChanged();

  protected:
    bool tell() override;

  private:
    std::function<QString()> words_;
    QString told_;
};

}  // namespace kestrix::live
