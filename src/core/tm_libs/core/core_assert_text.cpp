#include "core_assert_text.h"

#include <cstdio>
#include <cstring>

namespace Core::Detail {
namespace {

constexpr size_t kTextLimit = 2029;
constexpr char kTooLong[] = " ... Text too long";
static_assert(kTextLimit + sizeof kTooLong <= kAssertionTextSize,
              "the marker and its terminator must fit behind the limit");

void mark_too_long(char (&buffer)[kAssertionTextSize], size_t offset) {
    std::memcpy(buffer + offset, kTooLong, sizeof kTooLong);
}

// The head's length, or kTextLimit when it was cut.
size_t format_head(char (&buffer)[kAssertionTextSize], const AssertionRecord& record) {
    // One byte more than the limit, so that a head of exactly kTextLimit bytes is seen whole
    // (and then marked, as one that overflows).
    const int length =
        record.message != nullptr
            ? std::snprintf(buffer, kTextLimit + 1, "%s(%d):\nASSERT( %s )\n%s\n", record.file,
                            record.line, record.expression, record.message)
            : std::snprintf(buffer, kTextLimit + 1, "%s(%d):\nASSERT( %s )\n", record.file,
                            record.line, record.expression);
    if (length < 0 || static_cast<size_t>(length) >= kTextLimit) {
        mark_too_long(buffer, kTextLimit);
        return kTextLimit;
    }
    return static_cast<size_t>(length);
}

}  // namespace

void format_assertion_text(char (&buffer)[kAssertionTextSize], const AssertionRecord& record,
                           const char* format, va_list arguments) {
    const size_t head = format_head(buffer, record);
    if (head >= kTextLimit || format == nullptr || format[0] == '\0') return;
    const size_t room = kTextLimit - head;
    const int length = std::vsnprintf(buffer + head, room + 1, format, arguments);
    if (length < 0 || static_cast<size_t>(length) > room) mark_too_long(buffer, room);
}

}  // namespace Core::Detail
