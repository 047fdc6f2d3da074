#pragma once

#include <QColor>
#include <QString>

#include "ui/Control.h"
#include "ui/Palette.h"

namespace kestrix::ui {

// A text on the screen.
class Label : public kestrix::ui::Control {
    Q_OBJECT
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)
    Q_PROPERTY(QColor backgroundColor READ backgroundColor NOTIFY backgroundColorChanged FINAL)
    Q_PROPERTY(QColor textColor READ textColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QString fontFamily READ fontFamily NOTIFY styleChanged FINAL)
    Q_PROPERTY(int fontSize READ fontSize NOTIFY styleChanged FINAL)
    Q_PROPERTY(int alignment READ alignment NOTIFY styleChanged FINAL)
    Q_PROPERTY(bool shrinksToFit READ shrinksToFit NOTIFY styleChanged FINAL)

  public:
    using Control::Control;

    QString text() const { return text_; }
    void setText(const QString& text);

    QColor backgroundColor() const { return background_; }
    void setBackgroundColor(const QColor& color);

    QColor textColor() const { return style_.textColor; }
    void setTextColor(const QColor& color);

    // size: in points of the stage.
    void setFont(const QString& family, int size);
    QString fontFamily() const { return style_.family; }
    int fontSize() const { return style_.size; }

    int alignment() const { return style_.alignment; }
    void setAlignment(Qt::AlignmentFlag alignment);

    // A text that is too wide is drawn smaller rather than cut.
    bool shrinksToFit() const { return style_.shrinksToFit; }
    void setShrinksToFit(bool shrinks);

  Q_SIGNALS:
    void textChanged();
    void backgroundColorChanged();
    void styleChanged();

  protected:
    bool tell() override;

  private:
    struct Style {
        QColor textColor = Palette::ungiven;
        QString family = QStringLiteral("Arial");
        int size = 17;
        int alignment = Qt::AlignLeft;
        bool shrinksToFit = false;
        bool operator==(const Style&) const = default;
    };

    QString text_;
    QString toldText_;
    QColor background_ = Palette::clear;
    QColor toldBackground_ = Palette::clear;
    Style style_;
    Style toldStyle_;
};

}  // namespace kestrix::ui
