#pragma once

#include <optional>
#include <string>

#include "history/Export.h"
#include "platform/MailSettings.h"

namespace kestrix::cli {

class CommandOptions;

// What the user asks of `export`, as it was given.
struct ExportOptions {
    std::string id;
    std::string documents;
    bool csv = false;
    bool pdf = false;
    std::optional<std::string> format;
    std::optional<std::string> output;
    std::optional<std::string> mail;
    std::optional<std::string> smtp;
    std::optional<std::string> from;
    std::optional<std::string> caFile;
    bool passwordFromInput = false;
    bool draft = false;
};

void describeExportOptions(CommandOptions& options, ExportOptions& given);

// What is wrong about them together, in one line; empty: nothing.
std::string problemOf(const ExportOptions& given);
// A mail is of the text unless something else is asked for.
const history::ExportFormat& formatOf(const ExportOptions& given);

// Puts what was given over what the folder's settings say; what is wrong with it, in one line; empty:
// nothing.
std::string completeMailSettings(const ExportOptions& given, platform::MailSettings& settings);

}  // namespace kestrix::cli
