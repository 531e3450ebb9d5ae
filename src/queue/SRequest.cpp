#include "SRequest.h"

#include <cerrno>
#include <new>

#include "../system/Dates.h"
#include "../system/Environment.h"
#include "../system/ErrnoKeeper.h"
#include "Layout.h"
#include "LoopbackSocket.h"

inline namespace mailhearth {

namespace {

constexpr char kAnswer[] = "0";

int Refuse(int error) {
  errno = error;
  return 0;
}

// Waits for the answer. Returns whether one came.
bool TakeAnswer(const LoopbackSocket& socket, double timeout) {
  if (!socket.Wait(timeout)) return false;
  const int length = socket.Receive();
  if (length >= 0 && length != 1) errno = EBADMSG;
  return length == 1;
}

}  // namespace

SRequest::SRequest(const SControl& source) : SNamedStringList(1, 0) {
  SControl::PutFilename(source.GetFilename());
  const SStringList names = source.Keys();
  for (const SString& name : names) (*this)[name] = source.Get(name);
  _PutLoaded(source.Loaded());
}

SRequest::~SRequest() = default;

int SRequest::Ask(const SString& function, double timeout) {
  (*this)[kFunctionField] = function;
  (*this)[kControlTypeField] = "Request";
  if (Get(kPriorityField).Count() == 0) (*this)[kPriorityField] = "3";
  PutFilename(MessageIdDate() + "." + ProcessIdString());
  LoopbackSocket socket;
  const int port = socket.Bind();
  if (port == 0) return 0;
  (*this)[kReturnPathField] = SString(port);
  if (!Write()) return 0;
  int answered = 0;
  try {
    answered = Notify() && TakeAnswer(socket, timeout);
    socket.Close();  // before the record goes: no answer is taken any more
    answered = answered && Read();
  } catch (const std::bad_alloc&) {
    socket.Close();
    RemoveMessage();  // nobody else would
    throw;
  }
  const ErrnoKeeper keep;
  RemoveMessage();
  return answered;
}

int SRequest::Answer() {
  if (Loaded() == 0) return Refuse(EINVAL);
  if (!Write()) return 0;
  const int port = PortNumber(_First(kReturnPathField));
  if (port < 1 || port > kLastPort) {
    RemoveMessage();
    return Refuse(EINVAL);
  }
  const LoopbackSocket socket;
  return socket.SendTo(port, kAnswer);
}

}  // namespace mailhearth
