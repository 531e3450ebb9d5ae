// What a module does with an error: it files a record for the module Error-Handler in the
// queue and tells the dispatcher, in place of printing.
//
//   if (!Deliver(record)) {
//     ProcessError(record, "Deliver", "Mailbox is locked", {"joe"});   // errno tells why
//     return;
//   }
//
// The record has "Function:" Error-Handler; "Error:", the value of ModuleName, a colon,
// `message` and, in parentheses, `context`; "Error-Text:", the elements of `text`; and, of
// errno as it was when the function was called, "Error-Number:" and "Error-Systext:", both of
// which are absent when that was 0. These replace what the record had. A new record has
// "Control-Type:" Error and "Priority:" 1 besides.
//
// Texts are stored as they are: ask IsFieldValue (FieldValue.h) of one with several lines.
//
// The id of a new record is made of the time, the process id and a number that counts the
// records made by the function in this process, from 1 on; so each of the two functions
// begins with 1, and where both make a record within one second, the later one may replace
// the other's. Known and kept.

#ifndef MAILHEARTH_QUEUE_ERRORRECORDS_H
#define MAILHEARTH_QUEUE_ERRORRECORDS_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SControl.h"

inline namespace mailhearth {

// Makes the message's own control record the error record; it keeps its file. Returns 1, or 0
// and errno when it could not be written; whether the dispatcher could be told is not looked
// at, here and below.
MAILHEARTH_EXPORT int ProcessError(SControl& control, const SString& context,
                                   const SString& message, const SStringList& text);

// Makes a new error record. Returns as above.
MAILHEARTH_EXPORT int ProcessError(const SString& context, const SString& message,
                                   const SStringList& text);

// Makes a new error record about `control`, unless that has passed through the error handler
// already: then, lest they go round for ever, a line goes to the standard error stream
// instead, with the time, the value of ModuleName, the name of this function and `text`, all
// its elements in one. Where the record cannot be written, its text form and an empty line go
// there.
MAILHEARTH_EXPORT void ProcessNotifyError(const SControl& control, const SString& context,
                                          const SString& message, const SStringList& text);

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_ERRORRECORDS_H
