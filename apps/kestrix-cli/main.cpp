#include "apps/kestrix-cli/CommandLine.h"

int main(int argc, char** argv) {
    return kestrix::cli::runCommandLine(argc, argv);
}
