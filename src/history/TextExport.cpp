#include "history/TextExport.h"

#include <QString>
#include <QStringDecoder>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "history/ExportLines.h"
#include "history/PatternPass.h"

namespace kestrix::history {
namespace {

constexpr qsizetype kPiece = qsizetype{32} * 1024;  // characters that are handed on at once

// Makes UTF-16 of UTF-8 and hands it on in pieces.
class Utf16Pieces {
  public:
    explicit Utf16Pieces(const ExportSink& sink) : sink_(sink), units_(kPiece, Qt::Uninitialized) {
        units_[used_++] = QChar(QChar::ByteOrderMark);
    }

    // text: whole characters. False: the sink has failed.
    bool append(std::string_view text) {
        const auto size = static_cast<qsizetype>(text.size());
        const qsizetype needed = used_ + decoder_.requiredSpace(size);
        if (needed > units_.size()) {
            if (!flush()) return false;
            units_.resize(std::max(units_.size(), decoder_.requiredSpace(size)));
        }
        QChar* const begin = units_.data();
        used_ = decoder_.appendToBuffer(begin + used_, QByteArrayView(text.data(), size)) - begin;
        return true;
    }

    bool flush() {
        if (outcome_.done && used_ > 0) {
            outcome_ = sink_({reinterpret_cast<const char*>(units_.constData()),
                              static_cast<std::size_t>(used_) * sizeof(QChar)});
        }
        used_ = 0;
        return outcome_.done;
    }

    const storage::Outcome& outcome() const { return outcome_; }

  private:
    const ExportSink& sink_;
    QString units_;
    qsizetype used_ = 0;
    // A mark at the beginning of a line is one of its characters.
    QStringDecoder decoder_{QStringDecoder::Utf8,
                            QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom};
    storage::Outcome outcome_;
};

class TextLines {
  public:
    TextLines(const ExportSink& sink, const std::string& timeStamp) : pieces_(sink), timeStamp_(timeStamp) {}

    bool add(std::string_view line) {
        line_ = line;
        return endLine();
    }
    bool add(const storage::MeasureData& measure) {
        line_.clear();
        appendMeasureLine(line_, measure);
        return endLine();
    }
    storage::Outcome end() {
        pieces_.flush();
        return pieces_.outcome();
    }

  private:
    bool endLine() {
        line_ += '\n';
        if (line_.find('%') == std::string::npos) return pieces_.append(line_);
        passed_.clear();
        appendPatternPass(passed_, line_, timeStamp_);
        return pieces_.append(passed_);
    }

    Utf16Pieces pieces_;
    const std::string& timeStamp_;
    std::string line_;
    std::string passed_;
};

}  // namespace

storage::Outcome writeText(const ExportedRecord& record, const ExportSink& sink) {
    TextLines lines(sink, record.timeStamp);
    if (record.record) {
        lines.add(RecordTitle);
        lines.add(RecordContent(*record.record));
    }
    lines.add(MeasureTitle);
    storage::Outcome read =
        eachMeasurement(record, [&lines](const storage::MeasureData& measure) { return lines.add(measure); });
    if (!read.done) return read;
    return lines.end();
}

}  // namespace kestrix::history
