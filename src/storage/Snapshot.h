#pragma once

#include "storage/Outcome.h"
#include "storage/ServiceDao.h"

namespace kestrix::storage {

// While it lives, all that is read through its ServiceDao belongs together, whatever others write; they wait
// meanwhile. Nothing is written through it. Not within a Transaction; the ServiceDao outlives it.
class Snapshot {
  public:
    explicit Snapshot(ServiceDao& dao);
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;
    ~Snapshot();

    // Whether it has begun.
    const Outcome& outcome() const { return outcome_; }

  private:
    ServiceDao& dao_;
    Outcome outcome_;
};

}  // namespace kestrix::storage
