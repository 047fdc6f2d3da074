#pragma once

#include <string>

// The text of a setting, by the setting's byte in the frame; empty when the byte is beyond the last setting.
namespace kestrix::protocol::expected {

std::string insulationVoltage(int index);
std::string insulationReference(int index);
std::string continuityLimit(int index);
std::string voltageMode(int index);
std::string loopMode(int index);
std::string loopCurrent(int index);
std::string rcdMode(int index);
std::string rcdCurrent(int mode, int index);
std::string rcdType(int index);
std::string rcdAngle(int index);

}  // namespace kestrix::protocol::expected
