#pragma once

#include <QFunctionPointer>
#include <QString>

#include <string>

namespace kestrix::platform {

// A part of the program whose libraries are dear to load. It lies in a file of its own, which is loaded when
// the part is first used, in some ten milliseconds, and stays.
struct LoadedModule {
    QFunctionPointer entry = nullptr;  // the one function that it shows
    std::string problem{};             // in one line, when there is none
};

// Where it lies, in the build tree and installed: beside the running program, or beside the folder of that.
// file: its name. place: as seen from the folder of the programs that the user calls.
QString modulePath(const QString& file, const QString& place);

// without: what cannot be done without it.
LoadedModule loadModule(const QString& path, const char* entry, const std::string& without);

// What its entry makes; Parts has a `problem`, which tells when there is no entry.
template <typename Parts>
Parts loadParts(const QString& path, const char* entry, const std::string& without) {
    const LoadedModule module = loadModule(path, entry, without);
    Parts parts;
    parts.problem = module.problem;
    if (module.entry != nullptr) reinterpret_cast<void (*)(Parts&)>(module.entry)(parts);
    return parts;
}

}  // namespace kestrix::platform
