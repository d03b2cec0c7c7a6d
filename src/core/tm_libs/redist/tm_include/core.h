// Starting and stopping the core services.
#pragma once

namespace Core {

// Starts LZO, makes the log options and the option registry exist, creates the IO manager
// and the projects registry where there are none, and declares the "BugReport Options".
// Calling it again does no harm.
void init();
// Deletes the projects registry, then the IO manager: the reverse of init. Calling it again
// does no harm.
void shutdown();

}  // namespace Core
