#include "core_crash_dump.h"

#include <fcntl.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "core_descriptor_write.h"
#include "core_report_files.h"

namespace Core::Detail {
namespace {

constexpr char kMagic[4] = {'Q', 'D', 'M', 'P'};
constexpr uint32_t kVersion = 1;
constexpr size_t kStackLimit = 256 * 1024;
constexpr uintptr_t kPageSize = 4096;
constexpr off_t kRecordHeaderSize = 16;

template <typename T>
void put_value(int descriptor, T value) {
    write_fully(descriptor, &value, sizeof value);
}

// A record: four letters, four bytes of zero and the size of what follows as 64 bits, which
// is filled in when the record ends.
class Record {
public:
    Record(int descriptor, const char (&tag)[5])
        : descriptor_(descriptor), start_(lseek(descriptor, 0, SEEK_CUR)) {
        write_fully(descriptor_, tag, 4);
        put_value<uint32_t>(descriptor_, 0);
        put_value<uint64_t>(descriptor_, 0);
    }
    ~Record() {
        const off_t end = lseek(descriptor_, 0, SEEK_CUR);
        if (start_ < 0 || end < start_ + kRecordHeaderSize) return;
        const auto size = static_cast<uint64_t>(end - start_ - kRecordHeaderSize);
        pwrite(descriptor_, &size, sizeof size, start_ + 8);
    }
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

private:
    int descriptor_;
    off_t start_;
};

unsigned hex_digit(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
    return 0;
}

// Reads the lines "START-END perms ..." of the memory map as they stream by and keeps the
// end of the mapping that holds one address.
class MappingFinder {
public:
    explicit MappingFinder(uintptr_t address) : address_(address) {}

    void feed(const char* text, size_t size) {
        for (size_t i = 0; i < size; ++i)
            step(text[i]);
    }
    uintptr_t end() const { return found_end_; }

private:
    void step(char c) {
        switch (field_) {
            case Field::kStart:
                if (c == '-')
                    field_ = Field::kEnd;
                else
                    start_ = start_ * 16 + hex_digit(c);
                break;
            case Field::kEnd:
                if (c != ' ') {
                    end_ = end_ * 16 + hex_digit(c);
                    break;
                }
                if (address_ >= start_ && address_ < end_) found_end_ = end_;
                field_ = Field::kRest;
                break;
            case Field::kRest:
                if (c != '\n') break;
                field_ = Field::kStart;
                start_ = end_ = 0;
                break;
        }
    }

    enum class Field { kStart, kEnd, kRest };
    uintptr_t address_;
    Field field_ = Field::kStart;
    uintptr_t start_ = 0;
    uintptr_t end_ = 0;
    uintptr_t found_end_ = 0;
};

// Copies the memory map into the dump; answers the end of the mapping that holds `stack`.
uintptr_t copy_maps(int descriptor, uintptr_t stack) {
    const int maps = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (maps < 0) return 0;
    MappingFinder finder(stack);
    char chunk[4096];
    for (;;) {
        const ssize_t size = ::read(maps, chunk, sizeof chunk);
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) break;
        write_fully(descriptor, chunk, static_cast<size_t>(size));
        finder.feed(chunk, static_cast<size_t>(size));
    }
    ::close(maps);
    return finder.end();
}

// The stack from its pointer up to the end of its mapping, at most kStackLimit bytes, page by
// page so that an unreadable page ends it cleanly.
void copy_stack(int descriptor, uintptr_t stack, uintptr_t mapping_end) {
    put_value<uint64_t>(descriptor, stack);
    const uintptr_t end = mapping_end > stack ? std::min(mapping_end, stack + kStackLimit) : stack;
    for (uintptr_t at = stack; at < end;) {
        const uintptr_t page_end = (at | (kPageSize - 1)) + 1;
        const size_t size = std::min(end, page_end) - at;
        const ssize_t written = write_raw(descriptor, reinterpret_cast<const void*>(at), size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        at += static_cast<uintptr_t>(written);
    }
}

}  // namespace

void write_dump(int descriptor, const Failure& failure) {
    write_fully(descriptor, kMagic, sizeof kMagic);
    put_value<uint32_t>(descriptor, kVersion);
    put_value<int32_t>(descriptor, report_settings().dump_type);
    put_value<uint32_t>(descriptor, 0);
    {
        Record cause(descriptor, "CAUS");
        put_value<int32_t>(descriptor, failure.signal);
        put_value<uint32_t>(descriptor, failure.code);
        put_value<int32_t>(descriptor, failure.error_number);
        put_value<int32_t>(descriptor, getpid());
        put_value<int32_t>(descriptor, gettid());
    }
    {
        Record registers(descriptor, "REGS");
        put_value<uint32_t>(descriptor, kRegisterCount);
        put_value<uint32_t>(descriptor, failure.context.complete ? 1 : 0);
        write_fully(descriptor, failure.context.registers, sizeof failure.context.registers);
    }
    uintptr_t stack_end = 0;
    {
        Record maps(descriptor, "MAPS");
        stack_end = copy_maps(descriptor, failure.context.stack());
    }
    {
        Record stack(descriptor, "STAK");
        copy_stack(descriptor, failure.context.stack(), stack_end);
    }
    Record end(descriptor, "END ");
}

}  // namespace Core::Detail
