// Reporting of errors by modules: instead of printing an error, a module files a record for
// the module Error-Handler in the queue and notifies the dispatcher.
//
//   if (!Deliver(record)) {
//     ProcessError(record, "Deliver", "Mailbox is locked", {"joe"});   // errno tells why
//     return;
//   }
//
// The record has these fields, which replace those it had:
//
//   Function:                      Error-Handler
//   Error:                         the value of ModuleName, a colon, `message` and, in
//                                  parentheses, `context`
//   Error-Text:                    the elements of `text`
//   Error-Number:, Error-Systext:  number and text of errno at the call; absent if it was 0
//
// A new record also has "Control-Type:" Error and "Priority:" 1.
//
// Texts are stored as they are: check a text of several lines with IsFieldValue (FieldValue.h).
//
// The id of a new record consists of the time, the process id and a number. Known and kept:
// each of the two functions that make new records counts its own in this process, from 1 on.
// So if both make a record within one second, the later record may replace the earlier one.

#ifndef MAILHEARTH_QUEUE_ERRORRECORDS_H
#define MAILHEARTH_QUEUE_ERRORRECORDS_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SControl.h"

inline namespace mailhearth {

// Makes the message's own control record the error record, which keeps its file. Returns 1, or
// 0 with errno when the record could not be written. Here and below, a failure to notify the
// dispatcher is ignored.
MAILHEARTH_EXPORT int ProcessError(SControl& control, const SString& context,
                                   const SString& message, const SStringList& text);

// Makes a new error record. Returns as above.
MAILHEARTH_EXPORT int ProcessError(const SString& context, const SString& message,
                                   const SStringList& text);

// Makes a new error record about `control`, unless that has already passed through the error
// handler. Then, to avoid an endless loop, writes a line to the standard error stream instead:
// the time, the value of ModuleName, the name of this function and the concatenated elements
// of `text`. If the record cannot be written, writes its text form and an empty line there.
MAILHEARTH_EXPORT void ProcessNotifyError(const SControl& control, const SString& context,
                                          const SString& message, const SStringList& text);

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_ERRORRECORDS_H
