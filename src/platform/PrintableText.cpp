#include "platform/PrintableText.h"

#include <QList>
#include <QString>

#include <algorithm>

namespace kestrix::platform {
namespace {

constexpr qsizetype kMostCharacters = 500;

bool isPrintable(char32_t c) {
    switch (QChar::category(c)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Other_NotAssigned:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return false;
        default:
            return true;
    }
}

}  // namespace

std::string printableText(std::string_view text) {
    const QString unicode = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    auto characters = unicode.toUcs4();
    if (characters.size() > kMostCharacters) characters.resize(kMostCharacters);
    for (auto& c : characters) {
        if (!isPrintable(c)) c = QChar::ReplacementCharacter;
    }
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()), characters.size())
        .toStdString();
}

}  // namespace kestrix::platform
