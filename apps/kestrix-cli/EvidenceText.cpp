#include "apps/kestrix-cli/EvidenceText.h"

#include <fmt/core.h>

#include <QDateTime>

#include <string_view>

#include "apps/common/PrintableText.h"
#include "apps/kestrix-cli/EvidenceFrames.h"
#include "display/Derivation.h"
#include "display/RcdRows.h"
#include "protocol/FrameLayout.h"
#include "storage/EvidenceHash.h"

namespace kestrix::cli {
namespace {

std::string momentOf(const storage::Moment& moment) {
    return QDateTime::fromMSecsSinceEpoch(moment.utc, Qt::OffsetFromUTC, moment.utcOffset)
        .toString(Qt::ISODateWithMs)
        .toStdString();
}

std::string frameText(const std::string& title, std::string_view frame) {
    std::string text = fmt::format("  {}: {}\n", title, storage::hexOf(frame));
    if (frame.size() != protocol::frame::kLength) return text;
    for (const protocol::frame::Row& row : protocol::frame::kRows)
        text += fmt::format("    {:>2}  {:<14}  {}\n", row.first,
                            storage::hexOf(frame.substr(row.first, row.length), ' '), row.name);
    return text;
}

}  // namespace

std::string evidenceText(const storage::EvidenceRow& row) {
    const storage::Evidence& evidence = row.evidence;
    const auto orNone = [](const std::string& text) { return text.empty() ? "-" : app::printable(text); };
    std::string text = fmt::format(
        "  evidence {}, identity {}\n  recorded {} by {}\n  {} by {} ({}), {} equal frame{} in a row\n",
        row.place, app::printable(row.identity), momentOf(row.moment), app::printable(row.program),
        storage::nameOf(evidence.origin), orNone(evidence.accessory), orNone(evidence.source),
        evidence.equalFrames, evidence.equalFrames == 1 ? "" : "s");
    text += frameText("frame", evidence.frame);
    for (std::size_t i = 0; i < evidence.tripTimeFrames.size(); ++i) {
        if (evidence.tripTimeFrames[i].empty()) continue;
        text += frameText(fmt::format("trip time {} {}", display::kRcdRowTexts[i].multiplier,
                                      display::kRcdRowTexts[i].angle),
                          evidence.tripTimeFrames[i]);
    }
    if (const auto frames = framesOf(evidence)) {
        const display::StoredTexts texts = display::derivedFrom(*frames);
        text += fmt::format("  derived: {} | {} | {}\n", app::printable(texts.function),
                            app::printable(texts.parameters), app::printable(texts.results));
    }
    text += fmt::format("  hash: {}\n", storage::hexOf(row.hash));
    if (row.hash != storage::hashOf(row)) text += "  THIS EVIDENCE WAS ALTERED\n";
    return text;
}

}  // namespace kestrix::cli
