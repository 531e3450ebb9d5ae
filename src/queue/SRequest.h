// SRequest is a question from one module to another and its answer, both sent through the
// queue. The module that asks has one SRequest, and the module that answers has another.
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
//   if (!request.Answer()) Complain(GetErrorString());
//
// The question is a control record whose id consists of the time and the process id, so one
// process asks one question at a time. "Return-Path:" is the port on which the process waits.
// The answering module writes the record back and then sends one byte to that port.
//
// A datagram at the port does not prove an answer: any process of the machine may send one.
// The system reuses ports, so the byte of a late answer may reach another question. The record
// of such an answer stays in the queue.
//
// A result of 1 means done. 0 means not done, with errno from the call that failed first.

#ifndef MAILHEARTH_QUEUE_SREQUEST_H
#define MAILHEARTH_QUEUE_SREQUEST_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SControl.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SRequest : public SControl {
 public:
  // A record with the id, the fields and Loaded() of `source`; directories and module come from
  // the environment.
  explicit SRequest(const SControl& source);

  SRequest(const SRequest& other) = default;
  SRequest& operator=(const SRequest& other) = default;
  ~SRequest() override;

  // Asks the module for `function` and waits at most `timeout` seconds for the answer; with 0
  // the answer must be there already. The record then holds the answer. Its file is removed,
  // also after every failure.
  //
  // Sets "Function:", "Control-Type:" to "Request", "Return-Path:" and, if the record has no
  // value there, "Priority:" to "3".
  //
  // Fails with
  //
  //   ETIMEDOUT  when no answer came in time
  //   EBADMSG    when more or less than one byte came
  //   EINVAL     when `timeout` is below 0 or not a number, or when DispatchSocket or
  //              DispatchKey is missing (SControl::Notify)
  //   EINTR      when a signal that the process handles ended the wait
  //
  // If the record can no longer be read, or memory runs out, its file is removed as well, if
  // possible.
  [[nodiscard]] int Ask(const SString& function, double timeout);

  // Writes the record back and notifies the module that asked. The record must have been read
  // (EINVAL). Without a port in "Return-Path:" removes the message and fails (EINVAL).
  [[nodiscard]] int Answer();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SREQUEST_H
