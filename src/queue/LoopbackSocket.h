// Not installed. Datagrams between the processes of one machine, by which the queue announces, asks
// and answers. On failure errno is that of the system.
//
//   const LoopbackSocket socket;
//   const int port = socket.Bind();
//   if (port > 0 && socket.Wait(2.5) && socket.Receive() == 1) ...

#ifndef MAILHEARTH_QUEUE_LOOPBACKSOCKET_H
#define MAILHEARTH_QUEUE_LOOPBACKSOCKET_H

#include <sys/time.h>

#include "../strings/SString.h"
#include "../system/Descriptor.h"

inline namespace mailhearth {

// Returns the number that a text begins with, read as a float and cut to an integer; -1 for
// one below 0 and 65537 for one above, which are no ports, and 0 where there is none.
[[nodiscard]] int PortNumber(const SString& text);

// Returns a time limit in seconds and microseconds, each with the sign of `seconds`. What is
// out of range is the longest wait there is, about 68 years, or negative; what is not a
// number is negative.
[[nodiscard]] timeval WaitLimit(double seconds);

// A socket for datagrams on the loopback address, closed with the object and seen by no
// program that the process starts.
class LoopbackSocket {
 public:
  LoopbackSocket();

  // Takes a free port. Returns it, or 0 on failure, of the constructor too.
  [[nodiscard]] int Bind() const;

  // Sends one datagram. Returns whether all of it was sent; not when the constructor failed.
  [[nodiscard]] bool SendTo(int port, const SString& datagram) const;

  // Needs, here and below: Bind() has succeeded.
  //
  // Waits until a datagram is there, `seconds` at the most: ETIMEDOUT when none came, EINVAL
  // for a limit below 0 or one that is not a number. A signal that the process handles ends
  // the wait (EINTR).
  [[nodiscard]] bool Wait(double seconds) const;

  // Takes the first datagram. Returns its length, 5 for longer ones; -1 when none is there.
  [[nodiscard]] int Receive() const;

  void Close() { socket_.Close(); }

 private:
  Descriptor socket_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_LOOPBACKSOCKET_H
