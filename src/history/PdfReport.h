#pragma once

#include "history/Export.h"

namespace kestrix::history {

// The report: a PDF of one page as ReportLayout.h lays it out, in Liberation Sans, with texts that can be
// selected and searched (but for what docs/export.md names). What that font lacks (Chinese, say) is drawn in
// another installed one; characters that none has are white squares and named in one log line for the whole
// report. Line feeds, tabs and their like are drawn as blanks. Needs a QGuiApplication; Qt's platform
// "offscreen" will do. The rows are kept in memory. The
// document's information names as its creator the program and what `verify --file` compares
// (storage/RecordMark.h).
storage::Outcome writePdf(const ExportedRecord& record, const ExportSink& sink);

extern const ExportFormat kPdfFormat;

}  // namespace kestrix::history
