// Asking about and stopping in an attached debugger.
// Failure style: both functions always succeed; without a debugger nothing happens.
#pragma once

namespace Core {

// True when a debugger traces this process.
bool debugger_present();

// Stops the process in the attached debugger (SIGTRAP). Only call when one is present:
// without a debugger the signal would end the process.
void raise_breakpoint();

}  // namespace Core
