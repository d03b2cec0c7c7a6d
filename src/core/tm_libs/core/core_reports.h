// The two reports a failure writes, each a .dmp and a .txt of the same number.
//
// Failure style: nothing throws out. A file that cannot be made is skipped; an exception
// while writing ends the text with a line that says so.
// Thread safety: none; the assertion report runs under the assertion lock, the exception
// report in the one crashing thread.
#pragma once

#include "core_assert.h"
#include "core_report_text.h"

namespace Core::Detail {

// For a failing assertion whose text is `text`, from the site's registers. Notes a file that
// cannot be made in the log "core.assert", and flushes the logs at the end.
void write_assertion_report(const char* text, const AssertionRecord& record,
                            const MachineContext& site);
// For a fatal fault or an uncaught C++ exception. Runs inside the crash handler: it uses no
// log and no stdio.
void write_exception_report(const Failure& failure);

}  // namespace Core::Detail
