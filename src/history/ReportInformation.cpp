#include "history/ReportInformation.h"

#include <QFile>
#include <QFileInfo>

#include <exception>
#include <qpdf/QPDF.hh>

namespace kestrix::history {
namespace {

constexpr qint64 kLargest = qint64{64} * 1024 * 1024;

// Throws what the library throws.
std::string creatorOf(std::string_view pdf) {
    QPDF document;
    document.setSuppressWarnings(true);
    document.setAttemptRecovery(false);  // a damaged report proves nothing
    document.processMemoryFile("report", pdf.data(), pdf.size());
    QPDFObjectHandle information = document.getTrailer().getKey("/Info");
    if (!information.isDictionary()) return {};
    QPDFObjectHandle creator = information.getKey("/Creator");
    return creator.isString() ? creator.getUTF8Value() : std::string();
}

}  // namespace

ReportInformation reportInformation(std::string_view pdf) {
    std::string creator;
    try {
        creator = creatorOf(pdf);
    } catch (const std::exception&) {
        return {.problem = "it is no PDF, or a damaged one"};
    }
    if (const auto mark = storage::recordMarkIn(creator)) return {.mark = *mark};
    if (creator == "Kestrix")
        return {.problem =
                    "it says nothing of its database: an earlier version wrote it, or it has no test record"};
    return {.problem = "it is no report of Kestrix"};
}

ReportInformation reportInformationOf(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists()) return {.problem = "there is no such file"};
    if (!info.isFile()) return {.problem = "it is no file"};
    if (info.size() > kLargest) return {.problem = "it is too large for a report"};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {.problem = file.errorString().toStdString()};
    const QByteArray bytes = file.read(kLargest);
    return reportInformation({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

}  // namespace kestrix::history
