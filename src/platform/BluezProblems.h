#pragma once

#include <string>
#include <vector>

#include "platform/BluezObjects.h"
#include "platform/BluezService.h"

namespace kestrix::platform {

// Every reason for which Bluetooth or one of its devices cannot be used, in a line that a user can act on.

BluezProblem noBus(int error);
BluezProblem silentBus();
BluezProblem noService();
BluezProblem silentService();
// The service, or the bus before it, has answered with an error instead of what it has.
BluezProblem problemOfService(const char* error, const char* message);

// Nothing when there is an adapter that is switched on.
BluezProblem problemOfAdapters(const BluezObjects& objects);
// Why a device cannot be dialled as things are; nothing when it can.
BluezProblem problemOfDevice(const BluezDevice& device, const BluezObjects& objects);
BluezProblem noDevice();
BluezProblem unknownDevice();
BluezProblem unpairedDevice();

// Why a device could not be connected.
BluezProblem problemOfConnecting(const char* error, const char* message);
BluezProblem takenElsewhere();
BluezProblem noAnswerWithin(Scheduler::Duration limit);
BluezProblem openedButNoTester();

}  // namespace kestrix::platform
