#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "storage/Evidence.h"
#include "storage/PreparedStatement.h"

namespace kestrix::storage {

// Finds how measurements were recorded in a chain without an index, which every press would pay for: they
// were recorded in the order of their numbers. In a chain whose rows were changed by hand it may miss one. It
// keeps its statements prepared: it goes before its connection does.
class EvidenceSearch {
  public:
    explicit EvidenceSearch(sqlite3* connection) : connection_(connection) {}

    // The row of the event Recorded; one that does not hold what such a row can hold has a hash of zeros.
    // None: there is none. Quick for one measurement after the other by ascending number. False: the chain
    // could not be read, and the connection tells why.
    bool find(std::int64_t dataId, std::optional<EvidenceRow>& found);

  private:
    // The first recorded one from a place on; place 0: there is none.
    struct Step {
        std::int64_t place = 0;
        std::int64_t dataId = 0;
    };
    bool firstFrom(std::int64_t place, Step& first);
    bool search(std::int64_t dataId, Step& step);
    bool read(std::int64_t place, std::optional<EvidenceRow>& found);

    sqlite3* connection_;
    // Where the search comes by, many events lie together that recorded nothing: the way across such rows is
    // gone once.
    static constexpr std::int64_t kLongWay = 64;
    std::map<std::int64_t, Step> ways_;
    std::int64_t noneFrom_ = 0;  // nothing is recorded from this place on; 0: not known
    std::int64_t head_ = 0;      // of the chain then
    std::int64_t dueFrom_ = 0;
    Prepared first_;
    Prepared row_;
    std::int64_t next_ = 0;  // the place behind the latest one that was found; 0: none was
};

}  // namespace kestrix::storage
