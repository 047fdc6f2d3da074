#include "tests/history/ReportReader.h"

#include <QXmlStreamReader>

#include <cmath>
#include <map>

#include "tests/history/OtherReaders.h"

namespace kestrix::history {

std::vector<Word> wordsOf(const std::string& pdf) {
    std::vector<Word> words;
    QXmlStreamReader reader(QString::fromStdString(
        outputOf(QStringLiteral("pdftotext"),
                 {QStringLiteral("-bbox"), QStringLiteral("FILE"), QStringLiteral("-")}, pdf)));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != QLatin1String("word"))
            continue;
        const auto number = [&reader](const char* name) {
            return reader.attributes().value(QLatin1String(name)).toDouble();
        };
        const double top = number("yMin");
        const double left = number("xMin");
        const double bottom = number("yMax");
        words.push_back({left, top, bottom - top, reader.readElementText().toStdString()});
    }
    return words;
}

std::string lineAt(const std::vector<Word>& words, double y) {
    std::map<double, std::string> found;
    for (const Word& word : words) {
        if (std::abs(word.y - y) < 1) found[word.x] = word.text;
    }
    std::string line;
    for (const auto& [x, text] : found) line += (line.empty() ? "" : " ") + text;
    return line;
}

std::string textOf(const std::string& pdf) {
    return outputOf(QStringLiteral("pdftotext"),
                    {QStringLiteral("-layout"), QStringLiteral("FILE"), QStringLiteral("-")}, pdf);
}

}  // namespace kestrix::history
