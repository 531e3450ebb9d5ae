// Not installed. The environment variables that the library asks for.

#ifndef MAILHEARTH_SYSTEM_ENVIRONMENTVARIABLES_H
#define MAILHEARTH_SYSTEM_ENVIRONMENTVARIABLES_H

inline namespace mailhearth {

inline constexpr char kProgramDirVariable[] = "ProgramDir";  // where the installation is
inline constexpr char kRootVariable[] = "Mailhearth";        // the directory of the queue
inline constexpr char kModuleNameVariable[] = "ModuleName";  // of the module that runs

// How the dispatcher is told: its port, and what proves that the sender is of the queue.
inline constexpr char kDispatchSocketVariable[] = "DispatchSocket";
inline constexpr char kDispatchKeyVariable[] = "DispatchKey";

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_ENVIRONMENTVARIABLES_H
