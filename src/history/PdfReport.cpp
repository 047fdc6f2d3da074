#include "history/PdfReport.h"

#include <QGuiApplication>
#include <QIODevice>
#include <QMarginsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <optional>
#include <string>

#include "history/ExportColumns.h"
#include "history/ExportLines.h"
#include "history/ExportPieces.h"
#include "history/ReportFont.h"
#include "history/ReportLayout.h"
#include "storage/RecordDigest.h"
#include "storage/RecordMark.h"

namespace kestrix::history {
namespace {

// Dots a point: places and the widths of characters are whole numbers of them.
constexpr int kDots = 10;
constexpr int kPointsAnInch = 72;
constexpr double kLineWidth = kDots;  // a point

// Hands what is written into it to the sink, in pieces.
class SinkDevice final : public QIODevice {
  public:
    explicit SinkDevice(const ExportSink& sink) : pieces_(sink) { open(QIODevice::WriteOnly); }
    bool isSequential() const override { return true; }
    storage::Outcome end() { return pieces_.end(); }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    // Who draws does not ask whether it could be written: end() tells.
    qint64 writeData(const char* bytes, qint64 size) override {
        pieces_.bytes().append(bytes, static_cast<std::size_t>(size));
        pieces_.pass();
        return size;
    }

  private:
    ExportPieces pieces_;
};

// mark: left as it is for measurements without a record.
storage::Outcome collect(const ExportedRecord& record, ReportLines& lines,
                         std::optional<storage::RecordMark>& mark) {
    std::optional<storage::RecordDigest> digest;
    if (record.record) {
        digest.emplace(*record.record);
        lines.recordTitle = RecordTitle;
        lines.recordContent = validUtf8(RecordContent(*record.record));
    }
    lines.measureTitle = MeasureTitle;
    std::optional<storage::EvidenceRow> recorded;
    storage::Outcome known;
    storage::Outcome read = eachMeasurement(record, [&](const storage::MeasureData& measure) {
        std::string row;
        appendMeasureLine(row, measure);
        lines.rows.push_back(validUtf8(row));
        known = findRecorded(record, measure.dataId, recorded);
        if (digest) digest->add(measure, recorded);
        return known.done;
    });
    if (!known.done || !read.done || !digest) return known.done ? read : known;
    mark = {record.record->recordId, digest->value(), {}};
    if (record.evidence == nullptr) return {};
    mark->head = record.evidence->findChainHead();
    return record.evidence->lastOutcome();
}

// What stands in the document's information as the program that made it.
QString creatorOf(const std::optional<storage::RecordMark>& mark) {
    const QString program = QStringLiteral("Kestrix");
    return mark ? program + QStringLiteral("; ") + QString::fromStdString(textOf(*mark)) : program;
}

// False when it was given up.
bool draw(QPainter& painter, const ReportPage& page, ReportFont& font, const std::function<bool()>& goesOn) {
    painter.setLayoutDirection(Qt::LeftToRight);  // fields stand in their order, whatever is in them
    QPen pen(Qt::SolidLine);                      // black
    pen.setWidthF(kLineWidth);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.drawRect(QRectF(page.border.x * kDots, page.border.y * kDots, page.border.width * kDots,
                            page.border.height * kDots));
    for (const double y : page.rules)
        painter.drawLine(QPointF(page.rulesLeft * kDots, y * kDots),
                         QPointF(page.rulesRight * kDots, y * kDots));
    for (const ReportText& text : page.texts) {
        if (goesOn && !goesOn()) return false;
        const ReportFont::Size& size = font.ofSize(text.size);
        painter.setFont(size.font);
        painter.drawText(QPointF(text.x * kDots, text.y * kDots + size.ascent), font.drawable(text.text));
    }
    return true;
}

storage::Outcome cannotDraw(const char* why) {
    return {false, QCoreApplication::translate("Export", why).toStdString(), 0};
}

}  // namespace

const ExportFormat kPdfFormat{".pdf", "application/pdf", false, writePdf};

storage::Outcome writePdf(const ExportedRecord& record, const ExportSink& sink) {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        return cannotDraw(QT_TRANSLATE_NOOP("Export", "this program has no fonts"));
    ReportLines lines;
    std::optional<storage::RecordMark> mark;
    if (storage::Outcome read = collect(record, lines, mark); !read.done) return read;
    if (record.allIsRead) record.allIsRead();
    const ReportPage page = layOutReport(lines);

    SinkDevice device(sink);
    QPdfWriter writer(&device);
    writer.setCreator(creatorOf(mark));
    writer.setResolution(kDots * kPointsAnInch);
    writer.setPageSize(QPageSize(QSizeF(page.width, page.height), QPageSize::Point, QStringLiteral("report"),
                                 QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    QPainter painter;
    if (!painter.begin(&writer)) return cannotDraw(QT_TRANSLATE_NOOP("Export", "the report cannot be drawn"));
    ReportFont font(writer, kDots);
    const bool whole = draw(painter, page, font, record.goesOn);
    painter.end();
    if (!whole) return cutShort();
    font.reportMissing();
    return device.end();
}

}  // namespace kestrix::history
