// Not installed. How the queue names things: its directories and files, the fields of its records,
// and the ports by which modules tell each other. docs/queue.md shows them at work.

#ifndef MAILHEARTH_QUEUE_LAYOUT_H
#define MAILHEARTH_QUEUE_LAYOUT_H

inline namespace mailhearth {

// Directories below the root.
inline constexpr char kControlDir[] = "/control/";
inline constexpr char kDeferredDir[] = "/deferred/";
inline constexpr char kMessagesDir[] = "/messages/";

// What follows a message's id in the names of its files, and the name of a file that is being
// written.
inline constexpr char kControlSuffix[] = "-Control";
inline constexpr char kHeaderSuffix[] = "-Header";
inline constexpr char kBodySuffix[] = "-Body";
inline constexpr char kTempSuffix[] = ".temp";

// The longest name of a file, and the longest id, which leaves room for what the queue appends: a
// control file that is being written has the longest name.
inline constexpr int kLongestFile = 255;
inline constexpr int kLongestId =
    kLongestFile - static_cast<int>(sizeof kControlSuffix - 1 + sizeof kTempSuffix - 1);
static_assert(kLongestId == 242 && sizeof kHeaderSuffix <= sizeof kControlSuffix &&
              sizeof kBodySuffix <= sizeof kControlSuffix);

// Fields of records.
inline constexpr char kFunctionField[] = "Function:";
inline constexpr char kControlTypeField[] = "Control-Type:";
inline constexpr char kPriorityField[] = "Priority:";
inline constexpr char kTraceField[] = "Trace:";
inline constexpr char kHostToField[] = "Host-To:";
inline constexpr char kReturnPathField[] = "Return-Path:";
inline constexpr char kErrorField[] = "Error:";
inline constexpr char kErrorTextField[] = "Error-Text:";
inline constexpr char kErrorNumberField[] = "Error-Number:";
inline constexpr char kErrorSystextField[] = "Error-Systext:";

// The last port that an answer is sent to, and the last that the dispatcher may be told to have.
// Known and kept: that is one more than there are, and nothing is sent to it.
inline constexpr int kLastPort = 65535;
inline constexpr int kLastDispatchPort = kLastPort + 1;

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_LAYOUT_H
