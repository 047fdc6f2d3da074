#include "apps/kestrix/Options.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <utility>

#include "platform/AccessorySources.h"

namespace kestrix {
namespace {

constexpr int kWrongUsage = 2;

std::string notEmpty(const std::string& value) {
    return value.empty() ? "is empty" : std::string();
}

// A tour has folder, settings and tester of its own.
void refuseBesideTour(const Options& options) {
    if (options.tour.empty()) return;
    const std::pair<const char*, bool> others[] = {{"--connect", !options.uris.empty()},
                                                   {"--documents", !options.documents.empty()},
                                                   {"--settings", !options.settings.empty()}};
    for (const auto& [name, given] : others) {
        if (given) throw CLI::ValidationError("--tour", std::string("goes without ") + name);
    }
}

}  // namespace

std::optional<Options> readOptions(int argc, char** argv, int& exitStatus) {
    CLI::App program{"Kestrix shows the display of a handheld installation tester, and records it",
                     "kestrix"};
    Options options;
    program.add_option("--connect", options.uris, "Where the tester is: " + platform::sourceForms())
        ->type_name("URI")
        ->allow_extra_args(false);
    program.add_option("--documents", options.documents, "Keep the database and its settings in this folder")
        ->type_name("DIR")
        ->check(notEmpty);
    program.add_option("--settings", options.settings, "Keep the settings in this file")
        ->type_name("FILE")
        ->check(notEmpty);
    program
        .add_option("--tour", options.tour,
                    "Show every screen with the built-in tester, into this folder; it is new or an earlier "
                    "tour's")
        ->type_name("DIR")
        ->check(notEmpty);
    program.add_flag("--verbose", options.verbose, "Say on standard error what happens");
    program.set_version_flag("--version", std::string("kestrix ") + KESTRIX_VERSION);
    try {
        program.parse(argc, argv);
        refuseBesideTour(options);
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
