#pragma once

#include <nettle/sha2.h>

#include <string_view>

#include "storage/Evidence.h"

namespace kestrix::storage {

// SHA-256 of bytes that come piece by piece. Not Qt's, which does not use the processor's instructions for
// it: a database has two to four hashes a measurement.
class Sha256Sum {
  public:
    Sha256Sum() { nettle_sha256_init(&state_); }
    void add(std::string_view bytes) {
        nettle_sha256_update(&state_, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
    }
    // Of what was added so far; more may follow.
    Sha256 value() const {
        sha256_ctx last = state_;
        Sha256 value{};
        nettle_sha256_digest(&last, value.size(), value.data());
        return value;
    }

  private:
    sha256_ctx state_{};
};

}  // namespace kestrix::storage
