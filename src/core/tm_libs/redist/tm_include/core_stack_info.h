// Core::StackInfo: walks the stack of the running program and writes each frame with its
// symbol, source line and, on request, the names and values of parameters and locals, from
// the program's DWARF information.
//
// Failure style: nothing throws. Without symbols a walk still writes addresses; memory is
// tested for readability before it is read, as a stack may be damaged.
// Thread safety: none of its own; the assertion path calls it under its lock.
// Allocation: a walk keeps its frame records and text buffers on the stack, so that it can
// run when the program is in a bad state (a crash handler on its alternate stack). elfutils
// still allocates as it unwinds and on its first look at a module's symbols and lines, and
// the C++ demangler allocates; prepare() reads the module list and allocates freely.
// Stack: a walk needs about 20 KiB, and some 160 KiB more while elfutils reads a module's
// line table for the first time; a crash handler's alternate stack wants 256 KiB.
// Platform: x86-64 Linux; symbols, lines and variables come from DWARF through elfutils.
#pragma once

#include <cstdint>
#include <string>

namespace Core {

class StackInfo {
public:
    // What a walk writes to.
    class Writer {
    public:
        virtual ~Writer() = default;
        // `text` as it stands.
        virtual void write(const char* text) = 0;
        // `text` and a line end.
        virtual void write_line(const char* text) = 0;
        // What stands for the name of an address that has no symbol; the walk ends the line.
        virtual void write_address(uintptr_t address) = 0;
    };

    // Receives the frame addresses of a collect.
    class StackCallbackGet {
    public:
        virtual ~StackCallbackGet() = default;
        virtual void push(uintptr_t address) = 0;
    };
    template <typename Container>
    class StackCallbackGetT : public StackCallbackGet {
    public:
        explicit StackCallbackGetT(Container& addresses) : addresses_(addresses) {}
        void push(uintptr_t address) override { addresses_.push_back(address); }

    private:
        Container& addresses_;
    };

    // Hands out addresses collected earlier, for dump.
    class StackCallbackPrint {
    public:
        virtual ~StackCallbackPrint() = default;
        virtual bool more() const = 0;
        virtual uintptr_t next() = 0;
    };
    template <typename Iterator>
    class StackCallbackPrintT : public StackCallbackPrint {
    public:
        StackCallbackPrintT(Iterator begin, Iterator end) : at_(begin), end_(end) {}
        bool more() const override { return at_ != end_; }
        uintptr_t next() override { return *at_++; }

    private:
        Iterator at_;
        Iterator end_;
    };

    enum Mode { kFrames = 0, kParameters = 1, kParametersAndLocals = 2 };

    // The process's one walker, made on first use.
    static StackInfo& instance();

    // Starts or restarts the symbol handler: reads the list of loaded modules again, and
    // reads their symbols and lines afresh when they are next needed. The other functions
    // start it on their first use; a module loaded later is known after the next prepare().
    void prepare();
    // Writes the frames that start at the given registers (program counter, stack pointer,
    // frame pointer): one line per frame, and with `mode` above kFrames its variables,
    // leaving out those whose names begin with `skip_prefix` (may be null). `thread` is not
    // used: every thread's stack is in our own memory, so the registers say which to walk.
    // A frame's line is "PC  STACK  name+displacement  file(line)", where STACK is the stack
    // pointer in that frame.
    void walk(const void* thread, uintptr_t pc, uintptr_t stack, uintptr_t frame, Writer& writer,
              int mode, const char* skip_prefix);
    // As walk, from the function that calls it, leaving out `skip` more of its callers.
    [[gnu::noinline]] void walk_here(Writer& writer, int mode, const char* skip_prefix,
                                     int skip = 0);
    // Pushes an address for every frame that starts at the given registers: the program
    // counter of the first, and for each caller its return address less one (inside the
    // call), so that describe() names the calling line.
    void collect(uintptr_t pc, uintptr_t stack, uintptr_t frame, StackCallbackGet& callback);
    // As collect, from the function that calls it, leaving out `skip` more of its callers.
    [[gnu::noinline]] void collect_here(StackCallbackGet& callback, int skip = 0);
    // One text for an address: its function, file and line; empty for an allocator's own
    // frame.
    std::string describe(uintptr_t address);
    // Writes the text of each address that `callback` hands out to standard error.
    void dump(StackCallbackPrint& callback);

private:
    StackInfo();
    struct Impl;
    Impl* impl_;
};

}  // namespace Core
