#include "apps/kestrix-cli/ProgramLog.h"

#include <string_view>

#include "apps/common/PrintableLog.h"
#include "apps/kestrix-cli/Output.h"
#include "platform/Log.h"

namespace kestrix::cli {

void installProgramLog(bool verbose) {
    platform::installLogFormat(verbose);
    app::installPrintableLog([](std::string_view line) { standardError().line(line); });
}

}  // namespace kestrix::cli
