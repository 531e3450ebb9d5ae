// The umbrella header: it includes the whole library. Everything is declared in
// `inline namespace mailhearth`, so names need no qualification; mailhearth::SString
// resolves an ambiguity.
//
// This header includes every installed header once.

#ifndef MAILHEARTH_MAILHEARTH_H
#define MAILHEARTH_MAILHEARTH_H

#include "address/AddressRepair.h"    // addresses as people write them
#include "address/Domains.h"          // the domain of an address
#include "address/Literals.h"         // the domain in brackets
#include "address/S821Address.h"      // addresses of envelopes
#include "address/S821Parser.h"       // their parser
#include "address/S822Address.h"      // addresses of headers
#include "address/S822Parser.h"       // the parser of address lists
#include "address/SAddressFault.h"    // why an address is bad
#include "address/SParser.h"          // the base of both parsers
#include "address/SToken.h"           // tokens of addresses
#include "address/ScanState.h"        // states of the scanners
#include "lists/SStringItem.h"        // nodes of lists
#include "lists/SStringList.h"        // lists of strings
#include "queue/ErrorRecords.h"       // errors reported through the queue
#include "queue/FieldValue.h"         // which values a field may have
#include "queue/PathComponent.h"      // which names a path may contain
#include "queue/SControl.h"           // control records of queued messages
#include "queue/SField.h"             // named lists in files
#include "queue/SModule.h"            // name and directories of a module
#include "queue/SRequest.h"           // requests to other modules
#include "regex/GrepError.h"          // reports of invalid Grep tests
#include "regex/PasteBuffer.h"        // expansion of replacements
#include "regex/SPerlRegex.h"         // patterns in a Perl-like dialect
#include "regex/SRegex.h"             // POSIX patterns
#include "strings/Export.h"           // marks exported names
#include "strings/SFixedString.h"     // strings over bytes that somebody else owns
#include "strings/SLineBreaker.h"     // the lines of a text
#include "strings/SString.h"          // strings
#include "strings/SStringRep.h"       // the shared representation of strings
#include "strings/SSubString.h"       // ranges of strings that can be assigned to
#include "system/CutInfo.h"           // settings of the installation
#include "system/Dates.h"             // the current time as text
#include "system/Digests.h"           // MD5, hexadecimal text, mailbox buckets
#include "system/Directories.h"       // listing and making directories
#include "system/Environment.h"       // settings, process id, error texts
#include "system/FileLocks.h"         // record locks
#include "system/FileOperations.h"    // removing, copying, whole files read and written
#include "system/FileStatus.h"        // existence, rights, size, age; free disk space
#include "system/ListFormat.h"        // filling words into lines
#include "system/Paths.h"             // parts of paths
#include "system/Random.h"            // random integers
#include "tables/SIndexString.h"      // strings by an integer
#include "tables/SNLists.h"           // the base of the named containers
#include "tables/SNamedStringList.h"  // lists by name, and their text form
#include "tables/SNamedValue.h"       // integers by name
#include "tables/STable.h"            // a hash table that keeps insertion order

#endif  // MAILHEARTH_MAILHEARTH_H
