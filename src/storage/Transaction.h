#pragma once

#include "storage/Outcome.h"
#include "storage/ServiceDao.h"

namespace kestrix::storage {

// While it lives, the operations of its ServiceDao count all together or not at all: they are undone at its
// end, unless they were committed. From its beginning no other connection writes, so that what is read in it
// still holds when it is written. After the first operation that fails the others do nothing, and
// lastOutcome() goes on telling of that one. One at a time; the ServiceDao outlives it.
class Transaction {
  public:
    // Waits for another connection that writes, as long as the ServiceDao's patience says; lastOutcome()
    // tells whether it has begun.
    explicit Transaction(ServiceDao& dao);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    // Everything is on the disk when it answers true. False: all of it is undone, and lastOutcome() says why.
    bool commit();

  private:
    void end();

    ServiceDao& dao_;
};

}  // namespace kestrix::storage
