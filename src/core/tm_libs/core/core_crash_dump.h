// The dump beside a report's text file: the registers, the memory map and the bytes of the
// failing thread's stack, in the format that docs/crash-dump.md describes.
//
// Failure style: writes what it can; a dump cut short lacks its end record.
// Thread safety: none. It allocates nothing and calls only system calls, so that the crash
// handler can use it.
#pragma once

#include "core_report_text.h"

namespace Core::Detail {

void write_dump(int descriptor, const Failure& failure);

}  // namespace Core::Detail
