#pragma once

#include <QFileSystemWatcher>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/AccessoryListing.h"
#include "platform/DocumentsFolder.h"
#include "platform/FailedStep.h"

namespace kestrix::shell {

// One place where the user may have his tester looked for.
struct TesterPlace {
    std::string uri;  // of the source; empty: nothing to choose, but a reason why there is nothing
    QString name;
    QString state;  // what is known of it while it is not looked for there
    QString group;  // what stands above it and its like
};

// All places that can be seen: what the listings show (of Bluetooth, the place that takes any paired tester
// first), the captures in the folder, and the built-in tester. Kept up to date from the event loop.
class TesterPlaces {
  public:
    using Listings = std::vector<std::unique_ptr<platform::AccessoryListing>>;

    TesterPlaces(Listings listings, const platform::DocumentsFolder& folder);

    std::vector<TesterPlace> places() const;

    // Called from the event loop after they have changed.
    std::function<void()> changed;

  private:
    Listings listings_;
    QFileSystemWatcher folder_;
    std::vector<TesterPlace> captures_;
};

}  // namespace kestrix::shell
