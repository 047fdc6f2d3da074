#pragma once

#include <string>

#include "storage/Evidence.h"

namespace kestrix::cli {

// How a measurement came about, in lines: where its evidence stands, each frame with its bytes by their
// names, and the texts that are derived from them; and that it was altered, where its hash does not fit.
std::string evidenceText(const storage::EvidenceRow& row);

}  // namespace kestrix::cli
