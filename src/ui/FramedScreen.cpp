#include "ui/FramedScreen.h"

#include "ui/KeyRules.h"
#include "ui/Palette.h"

namespace kestrix::ui {

FramedScreen::FramedScreen(ScreenId id, const Services& services, const char* titleName)
    : Screen(id), screenTitle(*this, titleName), services_(services) {
    screenTitle.setFont(QStringLiteral("Arial"), 18);
    screenTitle.setTextColor(Palette::textOnDark);
    screenTitle.setAlignment(Qt::AlignHCenter);
    screenTitle.setShrinksToFit(true);
    btnBack.setImage(QStringLiteral("orvo_home_button_back.png"));
    btnBack.setAccessibleName(tr("Back"));
    btnBack.setAction([this] { pressBack(); });
}

void FramedScreen::setName(const QString& name) {
    name_ = name;
    setTitle(name);
    Q_EMIT nameChanged();
}

void FramedScreen::pressBack() {
    services_.navigation.dismiss(true);
}

bool FramedScreen::pressKey(int key, int modifiers, bool repeated) {
    if (!KeyRules::leadsBack(key, modifiers)) return Screen::pressKey(key, modifiers, repeated);
    if (!repeated && isClosable()) pressBack();
    return true;
}

}  // namespace kestrix::ui
