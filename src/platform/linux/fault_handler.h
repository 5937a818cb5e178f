// What happens inside the program at a fault: it tells its watcher and waits for the dump, then the system goes on.
#pragma once

#include <chrono>
#include <cstddef>

#include "base/result.h"

namespace kelvane::linux_os {

// For SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT and SIGTRAP, in the whole process; handlers that were there before run
// after ours. `socket` leads to the watcher and stays open until removeFaultHandlers(). A watcher that is gone costs no
// time, one that hangs costs `patience`. Installing again only changes these two.
[[nodiscard]] Status installFaultHandlers(int socket, std::chrono::milliseconds patience);
void removeFaultHandlers();

// Gives the calling thread a stack for the handler alone, until it ends, so that a stack that ran over can be handled
// at all. A thread that has such a stack already keeps it.
void giveThreadHandlerStack();

}  // namespace kelvane::linux_os
