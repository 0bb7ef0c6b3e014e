// A disk that fails when a test says so.
// Stands between the library and the system calls of its files while it lives: counts them, fills
// up after some bytes, fails from some call on. Leans on the hook of platform/os.
#pragma once

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "platform/os.h"

namespace clxml::testing {

/// Every file of the library goes through it; nothing fails until something is set.
class FailingDisk final : public os_Faults {
 public:
  FailingDisk () : before (os_InstallFaults (this)) {}
  ~FailingDisk () { os_InstallFaults (before); }
  FailingDisk (const FailingDisk&) = delete;
  FailingDisk& operator= (const FailingDisk&) = delete;

  /// The disk takes so many bytes more; the write that does not fit goes out in part, and the next
  /// call fails with ENOSPC, as all that follow do.
  void FullAfter (uint64_t bytes) { room = bytes; }
  /// Calls of this kind fail from the one with this number on (0 is the next), as many as told.
  void FailFrom (os_Operation operation, uint64_t call, int error = EIO,
                 uint64_t times = std::numeric_limits<uint64_t>::max ()) {
    At (operation).error = error;
    At (operation).first = At (operation).calls + call;
    At (operation).times = times;
  }
  /// One call fails.
  void FailOnce (os_Operation operation, uint64_t call, int error = EIO) {
    FailFrom (operation, call, error, 1);
  }
  /// Reads and writes move at most so many bytes a call.
  void AtMost (std::size_t bytes) { most = bytes; }
  /// All is well again; the counts stay.
  void Heal () {
    room = std::numeric_limits<uint64_t>::max ();
    most = std::numeric_limits<std::size_t>::max ();
    for (Kind& kind : kinds) kind.error = 0;
  }
  /// Calls of this kind so far, the failed ones included.
  uint64_t Calls (os_Operation operation) { return At (operation).calls; }

 private:
  struct Kind {
    uint64_t calls = 0;
    uint64_t first = 0;
    uint64_t times = 0;
    int error = 0;
  };
  Kind& At (os_Operation operation) { return kinds.at (static_cast<std::size_t> (operation)); }

  int Before (os_Operation operation, std::size_t& n) override {
    Kind& kind = At (operation);
    const uint64_t call = kind.calls++;
    if (kind.error != 0 && call >= kind.first && call - kind.first < kind.times) return kind.error;
    if (n > most) n = most;
    if (operation != os_Operation::Write) return 0;
    if (room == 0) return ENOSPC;
    if (n > room) n = static_cast<std::size_t> (room);
    if (room != std::numeric_limits<uint64_t>::max ()) room -= n;
    return 0;
  }

  os_Faults* before;
  uint64_t room = std::numeric_limits<uint64_t>::max ();
  std::size_t most = std::numeric_limits<std::size_t>::max ();
  std::array<Kind, 6> kinds{};
};

}  // namespace clxml::testing
