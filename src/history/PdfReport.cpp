#include "history/PdfReport.h"

#include <QGuiApplication>
#include <QIODevice>
#include <QMarginsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <string>

#include "history/ExportColumns.h"
#include "history/ExportLines.h"
#include "history/ExportPieces.h"
#include "history/ReportFont.h"
#include "history/ReportLayout.h"

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

storage::Outcome collect(const ExportedRecord& record, ReportLines& lines) {
    if (record.record) {
        lines.recordTitle = RecordTitle;
        lines.recordContent = validUtf8(RecordContent(*record.record));
    }
    lines.measureTitle = MeasureTitle;
    return eachMeasurement(record, [&lines](const storage::MeasureData& measure) {
        std::string row;
        appendMeasureLine(row, measure);
        lines.rows.push_back(validUtf8(row));
        return true;
    });
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
    if (storage::Outcome read = collect(record, lines); !read.done) return read;
    const ReportPage page = layOutReport(lines);

    SinkDevice device(sink);
    QPdfWriter writer(&device);
    writer.setCreator(QStringLiteral("Kestrix"));
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
