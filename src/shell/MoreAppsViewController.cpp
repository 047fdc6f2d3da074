#include "shell/MoreAppsViewController.h"

#include <QVariantMap>

#include "shell/AddressOpening.h"
#include "shell/ShellLog.h"

namespace kestrix::shell {

void MoreAppsViewController::viewDidLoad() {
    product_ = productContent();
}

QVariantList MoreAppsViewController::dataList() const {
    QVariantList records;
    for (const ProductContent::Application& application : product_.applications)
        records << QVariantMap{{QStringLiteral("ImgUrl"), application.imgUrl},
                               {QStringLiteral("Title"), application.title},
                               {QStringLiteral("Content"), application.content}};
    return records;
}

void MoreAppsViewController::didSelectRow(int row) {
    pressURL(row);
}

void MoreAppsViewController::pressURL(std::int32_t row) {
    if (row < 0 || static_cast<std::size_t>(row) >= product_.applications.size()) return;
    const QString& address = product_.applications[static_cast<std::size_t>(row)].address;
    qCInfo(lcShell).noquote().nospace() << "====urls=====" << address;
    openOrSay(services_, address);
}

}  // namespace kestrix::shell
