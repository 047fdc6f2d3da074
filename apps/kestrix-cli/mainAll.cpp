// The program with all commands.

#include <string_view>

#include "apps/common/PrintableLog.h"
#include "apps/kestrix-cli/CommandLine.h"
#include "apps/kestrix-cli/Commands.h"
#include "apps/kestrix-cli/Output.h"
#include "platform/Log.h"

int main(int argc, char** argv) {
    using namespace kestrix;
    return cli::runCommandLine(argc, argv, {cli::allCommands(), [](bool verbose) {
                                                platform::installLogFormat(verbose);
                                                app::installPrintableLog([](std::string_view line) {
                                                    cli::standardError().line(line);
                                                });
                                            }});
}
