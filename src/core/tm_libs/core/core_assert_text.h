// The text of a failing assertion, as the dialog shows it and the report keeps it.
//
// Failure style: never fails; text that does not fit is cut and marked " ... Text too long".
// Thread safety: none; the assertion path formats under its lock.
#pragma once

#include <cstdarg>
#include <cstddef>

#include "core_assert.h"

namespace Core::Detail {

constexpr size_t kAssertionTextSize = 2048;

// "FILE(LINE):\nASSERT( EXPR )\n", with the site's early message "MESSAGE\n" behind it, and
// then the printf-style text of `format` (which may be null). The first part holds at most
// 2028 bytes; at 2029 or more it is cut there and the marker follows. The second part fills
// what is left of those 2029 bytes; when it does not fit, the marker goes at the offset that
// equals the space that was left, counted from the start of the buffer (so a long first part
// is cut short there too). The marker always lies inside the buffer.
void format_assertion_text(char (&buffer)[kAssertionTextSize], const AssertionRecord& record,
                           const char* format, va_list arguments);

}  // namespace Core::Detail
