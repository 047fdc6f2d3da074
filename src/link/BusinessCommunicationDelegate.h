#pragma once

#include "protocol/MeterReading.h"

namespace kestrix::link {

// Receives the decoded records, one per frame, on the main thread.
class BusinessCommunicationDelegate {
  public:
    virtual ~BusinessCommunicationDelegate() = default;
    // success: always true.
    virtual void didReceive3820Data(const protocol::MeterReading& record, bool success) = 0;
};

}  // namespace kestrix::link
