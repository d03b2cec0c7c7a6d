// Starting and stopping the core services.
#pragma once

namespace Core {

// Starts LZO, makes the log options and the option registry exist, creates the IO manager
// if there is none, and declares the "BugReport Options". Calling it again does no harm.
void init();
// Deletes what init created, in reverse order.
void shutdown();

}  // namespace Core
