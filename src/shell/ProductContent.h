#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantList>

#include <vector>

namespace kestrix::shell {

// What belongs to the product rather than to the program: product/content.json, which the program carries.
struct ProductContent {
    struct Application {
        QString imgUrl;   // name of its icon in the artwork
        QString title;    // what it is called
        QString content;  // what it does, in one sentence
        QString address;  // of its page in the store
    };
    QString webAddress;                     // the maker's
    std::vector<Application> applications;  // three, in the order in which they are listed

    // In one line what is wrong with the content, which is empty then. Empty: nothing.
    QString problem;
};

// content: JSON in UTF-8. Refused whole when anything of it is missing, too much, or no web address.
ProductContent readProductContent(const QByteArray& content);

// The one that the program carries. A problem is also one log line.
ProductContent productContent();

}  // namespace kestrix::shell
