// With an SRequest one module puts a question to another and takes the answer, by way of the
// queue; with another one the other module answers.
//
//   SControl question;                           // the module that asks
//   question["Mailbox:"] = "joe";
//   SRequest request(question);
//   if (request.Ask("Quota", 2.5)) Use(request.Get("Quota:"));
//
//   SControl record(id);                         // the module that the dispatcher starts
//   if (!record.Read()) Complain(GetErrorString());
//   SRequest request(record);
//   request["Quota:"] = "1000000";
//   request.Answer();
//
// The question is a control record whose id is made of the time and the process id, so one
// process asks one question at a time. "Return-Path:" is the port on which it waits. The
// answering module writes the record back and then sends one byte to that port.
//
// What comes to the port is not proved to be the answer: any process of the machine may send
// there. A port is used again some time later, so that the byte of an answer that came too
// late may reach another question. The record of such an answer stays in the queue.
//
// 1 means done, and 0 not done, errno then being that of the call that failed first.

#ifndef MAILHEARTH_QUEUE_SREQUEST_H
#define MAILHEARTH_QUEUE_SREQUEST_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SControl.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SRequest : public SControl {
 public:
  // A record with the id and the fields of `source`, read if that is; directories and module
  // come from the environment.
  explicit SRequest(const SControl& source);

  SRequest(const SRequest& other) = default;
  SRequest& operator=(const SRequest& other) = default;
  ~SRequest() override;

  // Asks the module for `function` and waits for the answer, `timeout` seconds at the most;
  // with 0 it must be there already. The record then holds the answer, and its file is gone,
  // as it is after every failure.
  //
  // Sets "Function:", "Control-Type:" to "Request", "Return-Path:" and, where the record has
  // no value there, "Priority:" to "3".
  //
  // Fails with ETIMEDOUT where no answer came in time, with EBADMSG where more or less than
  // one byte came, with EINVAL for a limit below 0 or one that is not a number and where
  // DispatchSocket or DispatchKey is missing (SControl::Notify), and with EINTR where a signal that
  // the process handles ended the wait. Where the record cannot be read any more, or memory runs
  // out, it is removed as well, as far as it can be.
  [[nodiscard]] int Ask(const SString& function, double timeout);

  // Writes the record back and tells the module that asked. The record must have been read
  // (EINVAL). Without a port in "Return-Path:" the message is removed (EINVAL).
  int Answer();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SREQUEST_H
