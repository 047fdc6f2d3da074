#pragma once

#include <QString>

#include <string>

#include "platform/DocumentsFolder.h"
#include "storage/DatabaseLook.h"

// Which folder and which settings a program uses that records: the window and the command line alike.
namespace kestrix::storage {

// What the accessory at this URI gives: nobody measured what the simulator and replays say.
Readings readingsOf(const std::string& uri);

// chosen: by the user; empty: the standard folder of such readings.
QString documentsFolderFor(const QString& chosen, Readings readings);

// A folder that was chosen, and that of made-up readings, hold their own settings: each knows whether its
// tables were made. chosen: by the user; empty: those of the folder.
QString settingsFileFor(const QString& chosen, const platform::DocumentsFolder& folder);

// Why a database that is another program's is not used, in one line.
std::string whyNotOurs(const platform::DocumentsFolder& folder);

}  // namespace kestrix::storage
