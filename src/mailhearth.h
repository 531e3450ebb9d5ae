// The whole library: the one header a newcomer needs. Everything is declared in
// `inline namespace mailhearth`, so names are used as they stand, and
// mailhearth::SString settles an ambiguity.
//
// Every installed header stands here, once.

#ifndef MAILHEARTH_MAILHEARTH_H
#define MAILHEARTH_MAILHEARTH_H

#include "address/AddressRepair.h"    // addresses as people write them
#include "address/Domains.h"          // what stands behind the at-sign
#include "address/Literals.h"         // the domain in brackets
#include "address/S821Address.h"      // addresses of envelopes
#include "address/S821Parser.h"       // and how they are read
#include "address/S822Address.h"      // addresses of headers
#include "address/S822Parser.h"       // and how lists of them are read
#include "address/SAddressFault.h"    // why an address is bad
#include "address/SParser.h"          // what both parsers have in common
#include "address/SToken.h"           // pieces of addresses
#include "address/ScanState.h"        // what their scanners are within
#include "lists/SStringItem.h"        // nodes of lists
#include "lists/SStringList.h"        // lists of strings
#include "queue/ErrorRecords.h"       // errors told through the queue
#include "queue/FieldValue.h"         // what may be the value of a field
#include "queue/PathComponent.h"      // what may be a part of a path
#include "queue/SControl.h"           // control records of queued messages
#include "queue/SField.h"             // named lists in files
#include "queue/SModule.h"            // what the queue knows of a module
#include "queue/SRequest.h"           // questions to other modules
#include "regex/GrepError.h"          // what Grep says of a test in error
#include "regex/PasteBuffer.h"        // replacements
#include "regex/SPerlRegex.h"         // patterns in a Perl-like dialect
#include "regex/SRegex.h"             // POSIX patterns
#include "strings/Export.h"           // what the shared library shows
#include "strings/SFixedString.h"     // strings on bytes that somebody else keeps
#include "strings/SLineBreaker.h"     // the lines of a text
#include "strings/SString.h"          // strings
#include "strings/SStringRep.h"       // what the handles of a string share
#include "strings/SSubString.h"       // ranges of strings that can be assigned to
#include "system/CutInfo.h"           // what an installation says of itself
#include "system/Dates.h"             // the current time as text
#include "system/Digests.h"           // MD5, hexadecimal text, mailbox buckets
#include "system/Directories.h"       // listing and making directories
#include "system/Environment.h"       // settings, process id, error texts
#include "system/FileLocks.h"         // record locks
#include "system/FileOperations.h"    // removing, copying, whole files read and written
#include "system/FileStatus.h"        // what is at a path, and the room beside it
#include "system/ListFormat.h"        // words filled into lines
#include "system/Paths.h"             // parts of paths
#include "system/Random.h"            // random integers
#include "tables/SIndexString.h"      // strings by an integer
#include "tables/SNLists.h"           // what named containers have in common
#include "tables/SNamedStringList.h"  // lists by name, and their text form
#include "tables/SNamedValue.h"       // integers by name
#include "tables/STable.h"            // entries by name, in the order they came

#endif  // MAILHEARTH_MAILHEARTH_H
