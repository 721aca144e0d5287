#pragma once

#include <string>

namespace skyhaul {

// Lock files of serial ports, by which programs keep out of each other's way that know nothing of
// flock() or TIOCEXCL (UUCP's habit, which the Filesystem Hierarchy Standard describes under
// /var/lock): the file LCK..ttyUSB0 holds the process number of the program that has the port, as
// ten characters of decimal and a line end ("      4711\n"); older programs write it as four bytes.

// How ports are shared with other programs.
struct PortSharing {
  std::string lock_folder = "/var/lock";
  bool locks_pseudo_terminals = false;  // with lock files, too
};

// The device that a port's name ("/dev/serial/by-id/...") leads to.
std::string DeviceOfPort(const std::string& name);

// The lock file of a device; empty when it is to have none.
std::string PortLockPath(const PortSharing& sharing, const std::string& device);

// Who holds a port by its lock file, as a person knows it ("minicom (4711)"); empty when nobody
// does, also when lock is empty. A lock of a process that has ended counts as none, and so does one
// of this process's number that this process did not make.
std::string PortLockHolder(const std::string& lock);

// Makes the lock file of a port that this process has opened, in place of one whose process has
// ended. Returns who holds it when another program was quicker, else an empty text. Where this user
// cannot make lock files, and when lock is empty, there is none: the locks on the port itself are
// what counts then.
std::string TakePortLock(const std::string& lock, int port);

// Removes the lock file that was made for a port. Call before the port is closed.
void ReleasePortLock(int port);

}  // namespace skyhaul
