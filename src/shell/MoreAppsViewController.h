#pragma once

#include <QVariantList>

#include <cstdint>

#include "shell/ProductContent.h"
#include "ui/FramedScreen.h"

namespace kestrix::shell {

// The maker's further applications. Nothing posts what presents it: the menu has no third row.
class MoreAppsViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT
    Q_PROPERTY(QVariantList dataList READ dataList CONSTANT FINAL)

  public:
    using FramedScreen::FramedScreen;

    void viewDidLoad() override;

    // A record for each row: "ImgUrl", "Title" and "Content".
    QVariantList dataList() const;
    Q_INVOKABLE void didSelectRow(int row);
    // Has the row's page in the store opened. A row that is not there changes nothing.
    void pressURL(std::int32_t row);

  private:
    ProductContent product_;
};

}  // namespace kestrix::shell
