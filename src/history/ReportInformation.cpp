#include "history/ReportInformation.h"

#include <QFile>
#include <QFileInfo>

#include <memory>
#include <type_traits>
#include <utility>

#include <qpdf/qpdf-c.h>

namespace kestrix::history {
namespace {

constexpr qint64 kLargest = qint64{64} * 1024 * 1024;

// An error that nobody asked for would be told on standard error.
struct CleanUp {
    void operator()(qpdf_data document) const {
        qpdf_get_error(document);
        qpdf_cleanup(&document);
    }
};

// None: it is no PDF, or a damaged one, which proves nothing.
std::optional<std::string> creatorOf(std::string_view pdf) {
    const std::unique_ptr<std::remove_pointer_t<qpdf_data>, CleanUp> owned(qpdf_init());
    const qpdf_data document = owned.get();
    qpdf_silence_errors(document);
    qpdf_set_suppress_warnings(document, QPDF_TRUE);
    qpdf_set_attempt_recovery(document, QPDF_FALSE);
    qpdf_read_memory(document, "report", pdf.data(), pdf.size(), nullptr);
    if (qpdf_get_error(document) != nullptr) return std::nullopt;
    const qpdf_oh information = qpdf_oh_get_key(document, qpdf_get_trailer(document), "/Info");
    if (qpdf_oh_is_dictionary(document, information) == QPDF_FALSE) return std::string();
    const qpdf_oh creator = qpdf_oh_get_key(document, information, "/Creator");
    if (qpdf_oh_is_string(document, creator) == QPDF_FALSE) return std::string();
    std::string text = qpdf_oh_get_utf8_value(document, creator);
    return qpdf_get_error(document) == nullptr ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace

ReportInformation reportInformation(std::string_view pdf) {
    const std::optional<std::string> creator = creatorOf(pdf);
    if (!creator) return {.problem = "it is no PDF, or a damaged one"};
    if (const auto mark = storage::recordMarkIn(*creator)) return {.mark = *mark};
    if (*creator == "Kestrix")
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
