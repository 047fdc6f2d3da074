#include "apps/kestrix/Options.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace kestrix {
namespace {

constexpr int kWrongUsage = 2;

}  // namespace

std::optional<Options> readOptions(int argc, char** argv, int& exitStatus) {
    CLI::App program{"Kestrix shows the display of a handheld installation tester, and records it",
                     "kestrix"};
    Options options;
    program
        .add_option(
            "--connect", options.uris,
            "Where the tester is: tcp://host:port, serial:PORT?baud=9600, replay:FILE?speed=1 or simulator:")
        ->type_name("URI")
        ->allow_extra_args(false);
    program.add_option("--documents", options.documents, "Keep the database in this folder")
        ->type_name("DIR");
    program.add_option("--settings", options.settings, "Keep the settings in this file")->type_name("FILE");
    program
        .add_option("--tour", options.tour, "Show every screen with the built-in tester, into this folder")
        ->type_name("DIR");
    program.set_version_flag("--version", std::string("kestrix ") + KESTRIX_VERSION);
    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& success) {  // --help, --version
        exitStatus = program.exit(success, std::cout, std::cerr);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        std::cerr << "kestrix: " << error.what() << "; see kestrix --help\n";
        exitStatus = kWrongUsage;
        return std::nullopt;
    }
    return options;
}

}  // namespace kestrix
