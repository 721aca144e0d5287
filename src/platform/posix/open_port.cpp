#include "platform/posix/open_port.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/posix/descriptor.h"
#include "platform/posix/lock_file.h"
#include "platform/posix/port_users.h"
#include "platform/posix/system_reason.h"

namespace skyhaul {

namespace {

constexpr const char* kProcRoot = "/proc";

PortOpening Refuse(PortProblem problem, const std::string& reason) {
  return {.handle = kNoSerialHandle, .problem = problem, .reason = reason};
}

PortOpening RefuseOther(const std::string& name) {
  return Refuse(PortProblem::kOther, name + " is not a serial port");
}

std::string GroupName(gid_t id) {
  group entry{};
  group* found = nullptr;
  std::vector<char> buffer(16384);  // a group's entry also names all its members
  const int error = getgrgid_r(id, &entry, buffer.data(), buffer.size(), &found);
  return error == 0 && found != nullptr ? found->gr_name : std::to_string(id);
}

std::string ReasonDenied(const std::string& name) {
  std::string reason = "No permission for " + name;
  struct stat status {};
  if (stat(name.c_str(), &status) != 0) return reason;
  constexpr mode_t kGroupMayUse = S_IRGRP | S_IWGRP;
  if ((status.st_mode & kGroupMayUse) != kGroupMayUse) {
    return reason + ": only its owner may use the port";
  }
  const std::string group = GroupName(status.st_gid);
  return reason + ": add yourself to the group \"" + group +
         "\" that owns the port (sudo usermod -aG " + group + " $USER), then log in again";
}

PortOpening RefuseForError(const std::string& name, int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENXIO:  // the device file is there, and its hardware is not
    case ENODEV:
      return Refuse(PortProblem::kMissing, "There is no port " + name);
    case EACCES:
    case EPERM:
      return Refuse(PortProblem::kDenied, ReasonDenied(name));
    case EBUSY:        // another program has set TIOCEXCL
    case EWOULDBLOCK:  // flock's word for a lock that another holds
      return Refuse(PortProblem::kBusy, "Another program is using " + name);
    default:
      return Refuse(PortProblem::kOther, name + ": " + SystemReason(error));
  }
}

// A name that PortName() made up for a number without a port. It must not be looked for in the
// current folder.
PortOpening RefuseNumber(const std::string& name) {
  const std::string number = name.starts_with("COM") ? name.substr(3) : name;
  return Refuse(PortProblem::kMissing, "There is no port " + number + ": --ports lists the ports");
}

PortOpening RefuseHeld(const std::string& name, const std::string& holder) {
  return Refuse(PortProblem::kBusy, "Another program is using " + name + ": " + holder);
}

// The locks that the kernel keeps: the first keeps out programs that lock too, the second all but
// the superuser's. The lock file lies between them, because the second outlives us on a port that
// is refused and that another program has open. Returns why the port is refused.
PortOpening Claim(int port, const std::string& name, const std::string& lock) {
  if (flock(port, LOCK_EX | LOCK_NB) != 0) return RefuseForError(name, errno);
  const std::string holder = TakePortLock(lock, port);
  if (!holder.empty()) return RefuseHeld(name, holder);
  if (ioctl(port, TIOCEXCL) == 0) return {};
  const int error = errno;
  ReleasePortLock(port);
  return RefuseForError(name, error);
}

const PortSharing& SharingOf(const void* context) {
  static const PortSharing standard;
  return context == nullptr ? standard : *static_cast<const PortSharing*>(context);
}

}  // namespace

PortOpening OpenPosixPort(void* context, const std::string& name) {
  if (!IsPortName(name)) return RefuseNumber(name);
  struct stat status {};
  // Looked at before it is opened: opening alone has effects on some devices, and waits on a pipe.
  if (stat(name.c_str(), &status) != 0) return RefuseForError(name, errno);
  if (!S_ISCHR(status.st_mode)) return RefuseOther(name);
  const std::string device = DeviceOfPort(name);
  const std::string lock = PortLockPath(SharingOf(context), device);
  const std::string holder = PortLockHolder(lock);
  if (!holder.empty()) return RefuseHeld(name, holder);
  // Without O_NONBLOCK, opening waits for a carrier that no instrument gives. Without O_NOCTTY, an
  // adapter that is pulled out could end the program with a hang-up signal.
  Descriptor port(open(name.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (port.fd < 0) return RefuseForError(name, errno);
  if (isatty(port.fd) == 0) return RefuseOther(name);
  PortOpening opened = Claim(port.fd, name, lock);
  if (opened.problem != PortProblem::kNone) return opened;
  opened.handle = port.Release();
  const std::string users = OtherPortUsers(kProcRoot, device);
  if (!users.empty()) opened.warning = "Other programs have this port open: " + users;
  return opened;
}

}  // namespace skyhaul
