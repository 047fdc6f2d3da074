#include "shell/TesterPlaces.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <map>
#include <string_view>
#include <utility>

#include "platform/AccessoryUri.h"
#include "platform/SearchAdvice.h"
#include "platform/SourcePlace.h"

namespace kestrix::shell {
namespace {

using platform::AccessoryListing;
using platform::FailedStep;

// The context of the translations.
struct Places {
    Q_DECLARE_TR_FUNCTIONS(Places)
};

struct Kind {
    std::string_view scheme;
    const char* group;
    // The place that takes any of them; none: one must be chosen.
    const char* any;
    const char* nothingSeen;
};

constexpr Kind kKinds[] = {
    {"bluetooth", QT_TRANSLATE_NOOP("Places", "Bluetooth"), QT_TRANSLATE_NOOP("Places", "Any paired tester"),
     QT_TRANSLATE_NOOP("Places", "The one used last first")},
    {"serial", QT_TRANSLATE_NOOP("Places", "Serial ports"), nullptr,
     QT_TRANSLATE_NOOP("Places", "No serial port is there")},
};

QString withAdvice(const std::string& problem, FailedStep step, const std::string& uri) {
    const QString why = QString::fromStdString(problem);
    const QString advice = QString::fromStdString(platform::adviceFor(step, uri));
    return advice.isEmpty() ? why : Places::tr("%1. %2").arg(why, advice);
}

void addKind(std::vector<TesterPlace>& places, const AccessoryListing& listing, const Kind& kind) {
    const QString group = Places::tr(kind.group);
    const std::vector<platform::SeenAccessory> seen = listing.seen();
    const std::string anywhere = std::string(kind.scheme) + ':';
    const std::string problem = listing.problem();
    if (kind.any != nullptr || seen.empty()) {
        const QString nothing = Places::tr(kind.nothingSeen);
        places.push_back({.uri = kind.any != nullptr ? anywhere : std::string(),
                          .name = kind.any != nullptr ? Places::tr(kind.any) : QString(),
                          .state = problem.empty() ? nothing : withAdvice(problem, listing.step(), anywhere),
                          .group = group});
    }
    for (const platform::SeenAccessory& accessory : seen) {
        const QString state = QString::fromStdString(accessory.state);
        places.push_back({.uri = accessory.uri,
                          .name = QString::fromStdString(accessory.name),
                          .state = accessory.problem.empty()
                                       ? state
                                       : withAdvice(accessory.problem, accessory.step, accessory.uri),
                          .group = group});
    }
}

std::vector<TesterPlace> capturesIn(const QString& folder) {
    std::vector<TesterPlace> captures;
    const QDir files(folder);
    for (const QString& name : files.entryList({QStringLiteral("*.kxc")}, QDir::Files, QDir::Name)) {
        captures.push_back({.uri = platform::captureUri(files.absoluteFilePath(name).toStdString()),
                            .name = name,
                            .state = Places::tr("Kept bytes of a tester, played again"),
                            .group = Places::tr("Captures in this folder")});
    }
    return captures;
}

// Two testers of one model call themselves alike.
void tellApart(std::vector<TesterPlace>& places) {
    std::map<QString, int> names;
    for (const TesterPlace& place : places) ++names[place.name];
    for (TesterPlace& place : places) {
        const QString target = QString::fromStdString(platform::placeOf(place.uri)).section(u' ', -1);
        if (names[place.name] > 1 && !place.uri.empty()) place.name += QLatin1String(" (") + target + u')';
    }
}

}  // namespace

TesterPlaces::TesterPlaces(Listings listings, const platform::DocumentsFolder& folder)
    : listings_(std::move(listings)), captures_(capturesIn(folder.path())) {
    for (const auto& listing : listings_) {
        listing->changed = [this] {
            if (changed) changed();
        };
    }
    if (!QFileInfo::exists(folder.path())) return;
    folder_.addPath(folder.path());
    QObject::connect(&folder_, &QFileSystemWatcher::directoryChanged, &folder_, [this, path = folder.path()] {
        captures_ = capturesIn(path);
        if (changed) changed();
    });
}

std::vector<TesterPlace> TesterPlaces::places() const {
    std::vector<TesterPlace> places;
    for (const Kind& kind : kKinds) {
        for (const auto& listing : listings_) {
            if (listing->scheme() == kind.scheme) addKind(places, *listing, kind);
        }
    }
    places.insert(places.end(), captures_.begin(), captures_.end());
    places.push_back({.uri = "simulator:",
                      .name = Places::tr("Built-in tester"),
                      .state = Places::tr("Simulated: nothing is measured"),
                      .group = Places::tr("Without a tester")});
    tellApart(places);
    return places;
}

}  // namespace kestrix::shell
