#include "shell/AboutViewController.h"

#include "shell/AddressOpening.h"
#include "ui/Palette.h"

namespace kestrix::shell {

void AboutViewController::viewDidLoad() {
    product_ = productContent();
    logo.setImage(QStringLiteral("orvo_about_logo.png"));
    logo.setAccessibleName(tr("Kestrix, installation test records"));
    lblVersion.setText(tr("Version：1.0"));
    lblVersion.setFont(QStringLiteral("Helvetica"), 18);
    lblVersion.setTextColor(ui::Palette::textOnDark);
    lblVersion.setAlignment(Qt::AlignHCenter);
    lblVersion.setShrinksToFit(true);
    btnURL.setTitle(tr("Visit:") + product_.webAddress);
    btnURL.setHidden(product_.webAddress.isEmpty());
    btnURL.setAction([this] { pressURL(); });
}

void AboutViewController::pressURL() {
    openOrSay(services_, product_.webAddress);
}

}  // namespace kestrix::shell
