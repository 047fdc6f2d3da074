#include "storage/MeasurementIdentity.h"

#include <QRandomGenerator>
#include <QUuid>

namespace kestrix::storage {

// Qt's own are of older versions.
std::string newMeasurementIdentity(std::int64_t utc) {
    const auto moment = static_cast<std::uint64_t>(utc);
    const std::uint64_t random = QRandomGenerator::system()->generate64();
    const std::uint32_t more = QRandomGenerator::system()->generate();
    const auto byte = [](std::uint64_t bits, int at) { return static_cast<uchar>(bits >> (8 * at) & 0xFF); };
    const auto version = static_cast<ushort>(0x7000U | (more & 0x0FFFU));
    const auto variant = static_cast<uchar>(0x80U | byte(random, 7) >> 2U);
    return QUuid(static_cast<uint>(moment >> 16U & 0xFFFFFFFFU), static_cast<ushort>(moment & 0xFFFFU),
                 version, variant, byte(random, 6), byte(random, 5), byte(random, 4), byte(random, 3),
                 byte(random, 2), byte(random, 1), byte(random, 0))
        .toString(QUuid::WithoutBraces)
        .toStdString();
}

}  // namespace kestrix::storage
