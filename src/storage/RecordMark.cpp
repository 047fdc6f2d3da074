#include "storage/RecordMark.h"

#include <QRegularExpression>

#include <algorithm>

#include "storage/EvidenceHash.h"

namespace kestrix::storage {
namespace {

Sha256 sha256In(QStringView digits) {
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1());
    Sha256 hash{};
    std::copy(bytes.begin(), bytes.end(), hash.begin());
    return hash;
}

}  // namespace

std::string textOf(const RecordMark& mark) {
    std::string text = "record " + std::to_string(mark.recordId) + " sha256 " + hexOf(mark.record);
    if (mark.head.place > 0)
        text += ", evidence " + std::to_string(mark.head.place) + " sha256 " + hexOf(mark.head.hash);
    return text;
}

// Eighteen digits are always a number of 64 bits.
std::optional<RecordMark> recordMarkIn(std::string_view text) {
    static const QRegularExpression pattern(
        QStringLiteral("(?:^|[^\\w])record ([1-9][0-9]{0,17}) sha256 ([0-9a-f]{64})(?:, evidence "
                       "([1-9][0-9]{0,17}) sha256 ([0-9a-f]{64}))?\\z"));
    const QString line = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const QRegularExpressionMatch match = pattern.match(line);
    if (!match.hasMatch()) return std::nullopt;
    RecordMark mark{match.capturedView(1).toLongLong(), sha256In(match.capturedView(2)), {}};
    if (!match.capturedView(3).isEmpty())
        mark.head = {match.capturedView(3).toLongLong(), sha256In(match.capturedView(4))};
    return mark;
}

}  // namespace kestrix::storage
