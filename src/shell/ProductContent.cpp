#include "shell/ProductContent.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QUrl>

#include <utility>

#include "shell/ShellLog.h"

// The macro declares a function of the global namespace and must stand there.
static void initProductContent() {
    Q_INIT_RESOURCE(product);
}

namespace kestrix::shell {
namespace {

constexpr qsizetype kApplications = 3;
constexpr const char* kContentPath = ":/product/content.json";

bool isWebAddress(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
}

// Takes the texts out of one object, and keeps the first thing that is wrong with it.
class Reader {
  public:
    Reader(QJsonObject object, QString where) : rest_(std::move(object)), where_(std::move(where)) {}

    QString text(const char* key) {
        const QJsonValue value = rest_.take(QLatin1String(key));
        QString text = value.toString().trimmed();
        if (value.isUndefined()) say(QStringLiteral("\"%1\" is missing").arg(QLatin1String(key)));
        if (text.isEmpty() || text.contains(u'\n'))
            say(QStringLiteral("\"%1\" is no text of one line").arg(QLatin1String(key)));
        return text;
    }
    QString address(const char* key) {
        QString address = text(key);
        if (!isWebAddress(address))
            say(QStringLiteral("\"%1\" is no web address: %2").arg(QLatin1String(key), address));
        return address;
    }
    QJsonArray list(const char* key) { return rest_.take(QLatin1String(key)).toArray(); }

    void say(const QString& problem) {
        if (problem_.isEmpty()) problem_ = where_ + problem;
    }
    // Behind the last key that there is: any other one is wrong.
    QString problem() {
        if (!rest_.isEmpty()) say(QStringLiteral("there is no \"%1\"").arg(rest_.begin().key()));
        return problem_;
    }

  private:
    QJsonObject rest_;
    QString where_;
    QString problem_;
};

}  // namespace

ProductContent readProductContent(const QByteArray& content) {
    const auto refused = [](const QString& why) {
        ProductContent none;
        none.problem = why;
        return none;
    };
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = content.first(std::min<qsizetype>(error.offset, content.size())).count('\n') + 1;
        return refused(QStringLiteral("line %1: %2").arg(line).arg(error.errorString()));
    }
    ProductContent read;
    Reader all(document.object(), {});
    read.webAddress = all.address("webAddress");
    const QJsonArray listed = all.list("applications");
    if (listed.size() != kApplications)
        all.say(QStringLiteral("\"applications\" lists %1, not %2").arg(listed.size()).arg(kApplications));
    if (const QString problem = all.problem(); !problem.isEmpty()) return refused(problem);
    for (const auto& value : listed) {
        Reader one(value.toObject(), QStringLiteral("application %1: ").arg(read.applications.size() + 1));
        read.applications.push_back(
            {one.text("ImgUrl"), one.text("Title"), one.text("Content"), one.address("address")});
        if (const QString problem = one.problem(); !problem.isEmpty()) return refused(problem);
    }
    return read;
}

ProductContent productContent() {
    initProductContent();
    QFile file{QLatin1String(kContentPath)};
    ProductContent content;
    if (file.open(QIODevice::ReadOnly))
        content = readProductContent(file.readAll());
    else
        content.problem = file.errorString();
    if (!content.problem.isEmpty())
        qCWarning(lcShell).noquote() << "product/content.json:" << content.problem;
    return content;
}

}  // namespace kestrix::shell
