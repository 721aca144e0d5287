// Another program that wants a port: opens it and ends with the problem (see PortProblem) that it
// found, 0 when it found none.

#include "platform/platform.h"

int main(int argc, char** argv) {
  if (argc != 2) return -1;
  const skyhaul::SerialFunctions& serial = skyhaul::NativePlatform().serial;
  const skyhaul::PortOpening opening = serial.open(serial.context, argv[1]);
  if (opening.handle != skyhaul::kNoSerialHandle) serial.close(serial.context, opening.handle);
  return static_cast<int>(opening.problem);
}
