#include "core_stack_info.h"

#include <cctype>
#include <cstring>

#include "core_fixed_text.h"
#include "core_log_options.h"
#include "core_stack_frames.h"
#include "core_stack_session.h"
#include "core_stack_symbols.h"
#include "core_stack_variables.h"

namespace Core {
namespace {

using Detail::FixedText;
using Detail::StackFrame;
using Detail::StartRegisters;

// The registers at the place where it is inlined, so that a walk from there knows its own
// function's frame exactly.
[[gnu::always_inline]] inline StartRegisters registers_here() {
    StartRegisters here;
    asm volatile(
        "leaq 0(%%rip), %0\n\t"
        "movq %%rsp, %1\n\t"
        "movq %%rbp, %2"
        : "=r"(here.pc), "=r"(here.stack), "=r"(here.frame));
    return here;
}

// Source files of the allocators, whose frames say nothing about the caller's allocation:
// operator new and new[] of libstdc++, and glibc's malloc.
constexpr const char* kAllocatorFiles[] = {"new_op.cc", "new_opv.cc", "malloc.c"};

bool is_allocator_file(const char* file) {
    char lower[FixedText::kCapacity];
    std::size_t length = 0;
    for (; file[length] != '\0' && length + 1 < sizeof lower; ++length)
        lower[length] = static_cast<char>(std::tolower(static_cast<unsigned char>(file[length])));
    lower[length] = '\0';
    for (const char* allocator : kAllocatorFiles) {
        if (std::strstr(lower, allocator) != nullptr) return true;
    }
    return false;
}

class FrameWriter : public Detail::FrameVisitor {
public:
    FrameWriter(Dwfl* dwfl, StackInfo::Writer& writer, int mode, const char* skip_prefix)
        : dwfl_(dwfl), writer_(writer), mode_(mode), skip_prefix_(skip_prefix) {}

    void visit(const StackFrame& frame) override {
        FixedText line;
        line.append("%016llX  %016llX  ", static_cast<unsigned long long>(frame.pc),
                    static_cast<unsigned long long>(frame.stack));
        Detail::FunctionName name;
        if (Detail::find_function(dwfl_, frame.lookup_pc(), name)) {
            line.append("%s+%llX", name.text.c_str(),
                        static_cast<unsigned long long>(frame.pc - name.start));
        } else {
            writer_.write(line.c_str());
            line.clear();
            writer_.write_address(frame.pc);
        }
        Detail::SourceLine source;
        if (Detail::find_source_line(dwfl_, frame.lookup_pc(), source))
            line.append("  %s(%u)", source.file, static_cast<unsigned>(source.line));
        writer_.write_line(line.c_str());
        if (mode_ > StackInfo::kFrames)
            Detail::write_variables(dwfl_, frame, writer_, mode_ == StackInfo::kParametersAndLocals,
                                    skip_prefix_);
    }

private:
    Dwfl* dwfl_;
    StackInfo::Writer& writer_;
    int mode_;
    const char* skip_prefix_;
};

class AddressCollector : public Detail::FrameVisitor {
public:
    explicit AddressCollector(StackInfo::StackCallbackGet& callback) : callback_(callback) {}
    void visit(const StackFrame& frame) override { callback_.push(frame.lookup_pc()); }

private:
    StackInfo::StackCallbackGet& callback_;
};

}  // namespace

struct StackInfo::Impl {
    Detail::StackSession session;

    Detail::StackSession& prepared_session() {
        if (!session.prepared()) session.prepare();
        return session;
    }

    void walk(const StartRegisters& start, int skip, Writer& writer, int mode,
              const char* skip_prefix) {
        Detail::StackSession& current = prepared_session();
        FrameWriter frames(current.dwfl(), writer, mode, skip_prefix);
        Detail::visit_frames(current, start, skip, frames);
    }

    void collect(const StartRegisters& start, int skip, StackCallbackGet& callback) {
        AddressCollector addresses(callback);
        Detail::visit_frames(prepared_session(), start, skip, addresses);
    }
};

// The walker lives until the process ends: a crash during exit may still walk.
StackInfo::StackInfo() : impl_(new Impl) {}

StackInfo& StackInfo::instance() {
    static StackInfo info;
    return info;
}

void StackInfo::prepare() {
    impl_->session.prepare();
}

void StackInfo::walk(const void*, uintptr_t pc, uintptr_t stack, uintptr_t frame, Writer& writer,
                     int mode, const char* skip_prefix) {
    impl_->walk({pc, stack, frame}, 0, writer, mode, skip_prefix);
}

void StackInfo::walk_here(Writer& writer, int mode, const char* skip_prefix, int skip) {
    impl_->walk(registers_here(), skip + 1, writer, mode, skip_prefix);
}

void StackInfo::collect(uintptr_t pc, uintptr_t stack, uintptr_t frame,
                        StackCallbackGet& callback) {
    impl_->collect({pc, stack, frame}, 0, callback);
}

void StackInfo::collect_here(StackCallbackGet& callback, int skip) {
    impl_->collect(registers_here(), skip + 1, callback);
}

std::string StackInfo::describe(uintptr_t address) {
    Dwfl* dwfl = impl_->prepared_session().dwfl();
    Detail::FunctionName name;
    const char* function = Detail::find_function(dwfl, address, name)
                               ? name.text.c_str()
                               : "(Function name unavailable)";
    FixedText text;
    Detail::SourceLine source;
    if (Detail::find_source_line(dwfl, address, source)) {
        if (is_allocator_file(source.file)) return {};
        text.append("  %s (%d): %s", source.file, source.line, function);
    } else {
        text.append("0x%016llX (File and line number not available): %s",
                    static_cast<unsigned long long>(address), function);
    }
    return text.c_str();
}

void StackInfo::dump(StackCallbackPrint& callback) {
    while (callback.more()) {
        const uintptr_t address = callback.next();
        if (address == 0) continue;
        const std::string text = describe(address);
        if (!text.empty()) Detail::debug_printf("\n%s\n", text.c_str());
    }
}

}  // namespace Core
