#include "ErrorRecords.h"

#include <cerrno>
#include <ostream>

#include "../strings/StandardError.h"
#include "../system/Dates.h"
#include "../system/Environment.h"
#include "../system/EnvironmentVariables.h"
#include "Layout.h"

inline namespace mailhearth {

namespace {

constexpr char kErrorHandler[] = "Error-Handler";

// What is told of an error, taken before anything changes errno or the record, whose texts
// may be among it.
struct Report {
  int number;
  SString summary;
  SStringList text;
};

Report MakeReport(int number, const SString& context, const SString& message,
                  const SStringList& text) {
  return {number, GetEnv(kModuleNameVariable) + ":" + message + " (" + context + ")", text};
}

void PutReport(SControl& record, const Report& report) {
  record[kErrorField] = report.summary;
  record[kErrorTextField] = report.text;
  if (report.number == 0) {
    record.Delete(kErrorNumberField);  // of an error before
    record.Delete(kErrorSystextField);
    return;
  }
  record[kErrorNumberField] = SString(report.number);
  record[kErrorSystextField] = GetErrorString(report.number);
}

// Returns a new error record.
SControl NewRecord(long sequence, const Report& report) {
  SControl record(MessageIdDate() + "." + ProcessIdString() + "." + SString(sequence));
  record[kFunctionField] = kErrorHandler;
  record[kControlTypeField] = "Error";
  record[kPriorityField] = "1";
  PutReport(record, report);
  return record;
}

// Writes a record and tells the dispatcher, who need not be there.
int File(SControl& record) {
  if (!record.Write()) return 0;
  record.Notify();
  return 1;
}

// Writes a text and a line end to the standard error stream.
void Print(const SString& text) {
  // In one piece: the stream has no buffer, and other processes write to the same place.
  const SString line = text + '\n';
  StandardError() << line << std::flush;
}

}  // namespace

int ProcessError(SControl& control, const SString& context, const SString& message,
                 const SStringList& text) {
  const Report report = MakeReport(errno, context, message, text);
  control[kFunctionField] = kErrorHandler;
  PutReport(control, report);
  return File(control);
}

int ProcessError(const SString& context, const SString& message, const SStringList& text) {
  static long sequence = 0;
  const Report report = MakeReport(errno, context, message, text);
  SControl record = NewRecord(++sequence, report);
  return File(record);
}

void ProcessNotifyError(const SControl& control, const SString& context, const SString& message,
                        const SStringList& text) {
  static long sequence = 0;
  const Report report = MakeReport(errno, context, message, text);
  if (control.Get(kTraceField).Contains(kErrorHandler)) {
    Print(LogFileDate() + ':' + GetEnv(kModuleNameVariable) + ":ProcessNotifyError:" + text.Join());
    return;
  }
  SControl record = NewRecord(++sequence, report);
  if (File(record)) return;
  SString form;
  form << record;
  Print(form);
}

}  // namespace mailhearth
