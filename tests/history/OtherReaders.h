#pragma once

#include <QStringList>

#include <string>

// Programs of others that read what we write.
namespace kestrix::history {

// Runs a program that is expected to succeed on a file with these bytes; answers its standard output. An
// argument "FILE" is the file's name.
std::string outputOf(const QString& program, const QStringList& arguments, const std::string& fileContent);

// What poppler's pdfinfo prints of it.
std::string pdfInfoOf(const std::string& pdf);

// What a Python script prints that finds the file's name in sys.argv[1].
std::string readByPython(const std::string& script, const std::string& fileContent);

}  // namespace kestrix::history
