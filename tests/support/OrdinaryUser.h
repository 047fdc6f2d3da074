#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace kestrix::testing {

// A user whom rights bind, also where the tests run as root.
inline constexpr uid_t kNobody = 65534;

// What `report` answers in a process of such a user. At most 4,096 bytes. A process that fails is said in its
// place.
std::string asOrdinaryUser(const std::function<std::string()>& report);

}  // namespace kestrix::testing
