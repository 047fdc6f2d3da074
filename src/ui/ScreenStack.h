#pragma once

#include <QAbstractListModel>
#include <QPointer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "ui/Navigation.h"
#include "ui/Screen.h"

namespace kestrix::ui {

// The presented screens, the topmost last, each in front of all before it. The view slides them in and out.
class ScreenStack : public QAbstractListModel, public Navigation {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
    Q_PROPERTY(int slideDuration READ slideDuration CONSTANT FINAL)

  public:
    enum Roles { ScreenRole = Qt::UserRole, ViewRole, AnimatedRole, LeavingRole };
    using MakeScreen = std::function<std::unique_ptr<Screen>()>;
    static constexpr std::chrono::milliseconds kSlideDuration{300};

    // slideDuration: 0 presents and dismisses at once.
    explicit ScreenStack(std::chrono::milliseconds slideDuration = kSlideDuration)
        : slideDuration_(slideDuration) {}

    // view: the QML file that draws the screen.
    void registerScreen(ScreenId id, MakeScreen makeScreen, const QUrl& view);

    bool has(ScreenId id) const override { return registered_.count(id) > 0; }
    // Called when a screen is to be presented that nobody registered: somebody has to tell the user.
    void setMissing(std::function<void(ScreenId)> missing) { missing_ = std::move(missing); }
    // Makes and loads the screen. A screen that nobody registered is said in one log line.
    void present(ScreenId id, bool animated) override;
    void dismiss(bool animated) override;

    // The view has slid a leaving screen out; it is destroyed now.
    Q_INVOKABLE void slidOut(kestrix::ui::Screen* screen);
    // The view has slid a screen in; one that was dismissed meanwhile has not appeared.
    Q_INVOKABLE void slidIn(kestrix::ui::Screen* screen);

    // The screen that lies behind all presented ones. Not owned; it outlives the stack or is taken away by
    // nullptr.
    void setRoot(Screen* root);

    // The topmost that is not leaving; none without one.
    Screen* topmost() const;
    int count() const { return static_cast<int>(presented_.size()); }
    int slideDuration() const { return static_cast<int>(slideDuration_.count()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void countChanged();

  private:
    struct Registered {
        MakeScreen makeScreen;
        QUrl view;
    };
    struct Presented {
        std::unique_ptr<Screen> screen;
        QUrl view;
        bool animated = false;
        bool leaving = false;
        bool inPlace = false;  // it has slid in, and has not begun to leave
    };
    std::size_t rowOf(const Screen& screen) const;  // the number of rows for one that is not there
    bool stays(const Screen& screen) const;         // it is there, and is not leaving
    void settle(Screen& screen);
    void remove(std::size_t row);
    // Tells every screen whether one lies in place in front of it.
    void updateCovered();

    std::chrono::milliseconds slideDuration_;
    std::map<ScreenId, Registered> registered_;
    std::function<void(ScreenId)> missing_;
    std::vector<Presented> presented_;
    QPointer<Screen> root_;
};

}  // namespace kestrix::ui
