#include <alloca.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <deque>
#include <regex>
#include <string>
#include <vector>

#include "TempDir.h"
#include "core_stack_info.h"

namespace {

using Core::StackInfo;

// What a walk writes, a string per line.
class LinesWriter : public StackInfo::Writer {
public:
    void write(const char* text) override { current_ += text; }
    void write_line(const char* text) override {
        lines.push_back(current_ + text);
        current_.clear();
    }
    void write_address(uintptr_t address) override {
        current_ += "<no symbol>";
        addresses.push_back(address);
    }

    std::vector<std::string> lines;
    std::vector<uintptr_t> addresses;

private:
    std::string current_;
};

// Something after a call, so that the optimiser cannot turn it into a jump and drop the frame.
inline void StayInFrame() {
    asm volatile("");
}

// A page that is mapped but cannot be read.
class UnreadablePage {
public:
    UnreadablePage()
        : page_(::mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
    ~UnreadablePage() { ::munmap(page_, 4096); }
    UnreadablePage(const UnreadablePage&) = delete;
    UnreadablePage& operator=(const UnreadablePage&) = delete;
    uintptr_t address() const { return reinterpret_cast<uintptr_t>(page_); }

private:
    void* page_;
};

int AllocatorFrame();  // at the end of this file, where it claims to be an allocator's code

// The first lines of a walk from StackLeaf, called from StackMiddle, called from StackOuter.
constexpr int kLeafWalkLine = __LINE__ + 2;
[[gnu::noinline]] void StackLeaf(LinesWriter& writer, int mode, const char* skip_prefix) {
    StackInfo::instance().walk_here(writer, mode, skip_prefix);
    StayInFrame();
}

constexpr int kMiddleCallLine = __LINE__ + 2;
[[gnu::noinline]] void StackMiddle(LinesWriter& writer, int mode, const char* skip_prefix) {
    StackLeaf(writer, mode, skip_prefix);
    StayInFrame();
}

constexpr int kOuterCallLine = __LINE__ + 2;
[[gnu::noinline]] void StackOuter(LinesWriter& writer, int mode, const char* skip_prefix) {
    StackMiddle(writer, mode, skip_prefix);
    StayInFrame();
}

[[gnu::noinline]] void Recurse(LinesWriter& writer, int depth) {
    if (depth == 0)
        StackInfo::instance().walk_here(writer, StackInfo::kFrames, nullptr);
    else
        Recurse(writer, depth - 1);
    StayInFrame();
}

constexpr int kKnownFunctionLine = __LINE__ + 1;
[[gnu::noinline]] int KnownFunction(int value) {
    return value * 3 + 1;
}

[[gnu::noinline]] void CollectLeaf(std::deque<uintptr_t>& addresses, int skip) {
    StackInfo::StackCallbackGetT<std::deque<uintptr_t>> callback(addresses);
    StackInfo::instance().collect_here(callback, skip);
    StayInFrame();
}

[[gnu::noinline]] void CollectOuter(std::deque<uintptr_t>& addresses, int skip) {
    CollectLeaf(addresses, skip);
    StayInFrame();
}

// A crash handler walks from the registers that the signal interrupted.
LinesWriter* signal_writer = nullptr;

void WalkFromSignal(int, siginfo_t*, void* context) {
    const auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    StackInfo::instance().walk(nullptr, static_cast<uintptr_t>(registers[REG_RIP]),
                               static_cast<uintptr_t>(registers[REG_RSP]),
                               static_cast<uintptr_t>(registers[REG_RBP]), *signal_writer,
                               StackInfo::kFrames, nullptr);
}

[[gnu::noinline]] void RaiseSignal() {
    std::raise(SIGUSR1);
    StayInFrame();
}

// A return address inside a function that keeps a frame pointer (alloca forces one), where
// the caller's frame is found through the saved frame pointer.
[[gnu::noinline]] uintptr_t ReturnAddressInFramedFunction(std::size_t size) {
    char* scratch = static_cast<char*>(alloca(size));
    std::snprintf(scratch, size, "%zu", size);
    std::deque<uintptr_t> addresses;
    StackInfo::StackCallbackGetT<std::deque<uintptr_t>> callback(addresses);
    StackInfo::instance().collect_here(callback);
    StayInFrame();
    return addresses.empty() ? 0 : addresses.front() + 1;
}

struct Inner {
    unsigned short tag;
    unsigned char flag;
};
struct Shape {
    int id;
    Inner inner;
    double ratio;
    char name[12];
};
template <int Level>
struct Nest {
    Nest<Level + 1> next;
};
template <>
struct Nest<10> {
    int value;
};
struct Wide {
    int m0, m1, m2, m3, m4, m5, m6, m7, m8, m9, m10, m11, m12, m13, m14, m15, m16, m17, m18, m19,
        m20, m21, m22, m23, m24, m25, m26, m27, m28, m29, m30, m31, m32, m33, m34, m35;
};

// Its address escapes, so the optimiser keeps the variable in memory, where a walk reads it.
[[gnu::noinline]] void Keep(const void* variable) {
    asm volatile("" : : "r"(variable) : "memory");
}

// The frame whose variables the tests read. The struct comes in memory, where a parameter
// stays for the whole call; one in a register may be gone by the time of the walk.
[[gnu::noinline]] void VariablesFrame(LinesWriter& writer, int mode, const char* skip_prefix,
                                      Shape shape, uintptr_t unreadable) {
    int local_total = shape.id + 1;
    float local_scale = 1.5f;
    const char* local_text = "hello";
    const auto* local_hidden = reinterpret_cast<const char*>(unreadable);
    Nest<1> local_nest{};
    Wide local_wide{};
    Keep(&shape);
    Keep(&local_total);
    Keep(&local_scale);
    Keep(&local_text);
    Keep(&local_hidden);
    Keep(&local_nest);
    Keep(&local_wide);
    StackInfo::instance().walk_here(writer, mode, skip_prefix);
    Keep(&local_total);
}

// A frame's own line, not one of its variables.
bool IsFrameLine(const std::string& line) {
    static const std::regex frame_line("[0-9A-F]{16}  [0-9A-F]{16}  .*");
    return std::regex_match(line, frame_line);
}

// The lines below the first frame's own.
std::vector<std::string> FirstFrameVariables(const LinesWriter& writer) {
    std::vector<std::string> variables;
    for (std::size_t index = 1; index < writer.lines.size() && !IsFrameLine(writer.lines[index]);
         ++index)
        variables.push_back(writer.lines[index]);
    return variables;
}

// Walks from code inlined into OuterOfInlined: the frame is OuterOfInlined's, and so are its
// variables.
[[gnu::always_inline]] inline void InlinedWalk(LinesWriter& writer) {
    int inlined_local = 5;
    Keep(&inlined_local);
    StackInfo::instance().walk_here(writer, StackInfo::kParametersAndLocals, nullptr);
    StayInFrame();
}

[[gnu::noinline]] void OuterOfInlined(LinesWriter& writer) {
    int outer_local = 7;
    Keep(&outer_local);
    InlinedWalk(writer);
    Keep(&outer_local);
}

// The lines of VariablesFrame's variables in a walk from it.
std::vector<std::string> WalkVariables(int mode, const char* skip_prefix, uintptr_t unreadable) {
    LinesWriter writer;
    const Shape shape{42, {7, 1}, 1.0 / 3.0, "label"};
    VariablesFrame(writer, mode, skip_prefix, shape, unreadable);
    EXPECT_NE(writer.lines.at(0).find("VariablesFrame+"), std::string::npos) << writer.lines[0];
    return FirstFrameVariables(writer);
}

bool Has(const std::vector<std::string>& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

bool HasLineStarting(const std::vector<std::string>& lines, const std::string& start) {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return line.starts_with(start); });
}

std::string FileAndLine(int line) {
    return "stack_info_test.cpp(" + std::to_string(line) + ")";
}

TEST(StackInfoTest, FramesNameTheCallersInOrderWithFileAndLine) {
    StackInfo::instance().prepare();  // a second session over the same modules
    LinesWriter writer;
    StackOuter(writer, StackInfo::kFrames, nullptr);
    ASSERT_GE(writer.lines.size(), 4u);
    const std::regex frame_line("[0-9A-F]{16}  [0-9A-F]{16}  .+\\+[0-9A-F]+(  .+\\(\\d+\\))?");
    for (const std::string& line : writer.lines)
        EXPECT_TRUE(std::regex_match(line, frame_line)) << line;
    EXPECT_NE(writer.lines[0].find("(anonymous namespace)::StackLeaf+"), std::string::npos);
    EXPECT_TRUE(writer.lines[0].ends_with(FileAndLine(kLeafWalkLine))) << writer.lines[0];
    EXPECT_NE(writer.lines[1].find("(anonymous namespace)::StackMiddle+"), std::string::npos);
    EXPECT_TRUE(writer.lines[1].ends_with(FileAndLine(kMiddleCallLine))) << writer.lines[1];
    EXPECT_NE(writer.lines[2].find("(anonymous namespace)::StackOuter+"), std::string::npos);
    EXPECT_TRUE(writer.lines[2].ends_with(FileAndLine(kOuterCallLine))) << writer.lines[2];
    bool reached_main = false;
    std::string last_stack;
    for (const std::string& line : writer.lines) {
        reached_main = reached_main || line.find("  main+") != std::string::npos;
        const std::string stack = line.substr(18, 16);
        EXPECT_GT(stack, last_stack) << "stack pointers grow from frame to frame";
        last_stack = stack;
    }
    EXPECT_TRUE(reached_main);
}

TEST(StackInfoTest, ParametersAndLocalsPrintTheirValuesByTypeAndSize) {
    UnreadablePage unreadable;
    const std::vector<std::string> lines =
        WalkVariables(StackInfo::kParametersAndLocals, nullptr, unreadable.address());
    std::string all;
    for (const std::string& line : lines)
        all += line + "\n";
    char hidden[64];
    std::snprintf(hidden, sizeof hidden, "    local_hidden  %016llX",
                  static_cast<unsigned long long>(unreadable.address()));
    for (const std::string& expected : std::vector<std::string>{
             "    shape  Shape", "        id  0000002A", "        inner  Inner",
             "            tag  0007", "            flag  01",
             "        ratio  55555555",  // of a double, the low half
             "        name  'label'", "    local_total  int  0000002B",
             "    local_scale  float  1.500000", "    local_text  'hello'", std::string(hidden)})
        EXPECT_TRUE(Has(lines, expected)) << expected << " in\n" << all;
}

TEST(StackInfoTest, StructsPrintNineLevelsAndThirtyTwoMembers) {
    UnreadablePage unreadable;
    const std::vector<std::string> lines =
        WalkVariables(StackInfo::kParametersAndLocals, nullptr, unreadable.address());
    EXPECT_TRUE(Has(lines, "    local_nest  Nest<1>"));
    EXPECT_TRUE(Has(lines, std::string(32, ' ') + "next  Nest<8>"));
    EXPECT_TRUE(Has(lines, std::string(36, ' ') + "next  Nest<9>"));
    EXPECT_FALSE(HasLineStarting(lines, std::string(40, ' ')));
    EXPECT_FALSE(HasLineStarting(lines, std::string(36, ' ') + "value"));

    EXPECT_TRUE(Has(lines, "    local_wide  Wide"));
    EXPECT_TRUE(Has(lines, "        m31  00000000"));
    EXPECT_FALSE(HasLineStarting(lines, "        m32"));
}

TEST(StackInfoTest, ModeAndPrefixChooseTheVariables) {
    UnreadablePage unreadable;
    const std::vector<std::string> parameters =
        WalkVariables(StackInfo::kParameters, nullptr, unreadable.address());
    EXPECT_TRUE(Has(parameters, "    shape  Shape"));
    EXPECT_TRUE(Has(parameters, "        id  0000002A"));
    EXPECT_FALSE(HasLineStarting(parameters, "    local_"));

    EXPECT_TRUE(WalkVariables(StackInfo::kFrames, nullptr, unreadable.address()).empty());

    const std::vector<std::string> unprefixed =
        WalkVariables(StackInfo::kParametersAndLocals, "local_", unreadable.address());
    EXPECT_TRUE(Has(unprefixed, "    shape  Shape"));
    EXPECT_FALSE(HasLineStarting(unprefixed, "    local_"));
}

TEST(StackInfoTest, AFrameShowsItsOwnVariablesAndNotThoseOfCodeInlinedIntoIt) {
    LinesWriter writer;
    OuterOfInlined(writer);
    ASSERT_FALSE(writer.lines.empty());
    EXPECT_NE(writer.lines[0].find("OuterOfInlined+"), std::string::npos) << writer.lines[0];
    const std::vector<std::string> variables = FirstFrameVariables(writer);
    EXPECT_TRUE(Has(variables, "    outer_local  int  00000007"));
    EXPECT_FALSE(HasLineStarting(variables, "    inlined_local"));
}

TEST(StackInfoTest, AWalkFromASignalsRegistersReachesTheInterruptedFunction) {
    LinesWriter writer;
    signal_writer = &writer;
    struct sigaction action = {};
    struct sigaction previous = {};
    action.sa_sigaction = WalkFromSignal;
    action.sa_flags = SA_SIGINFO;
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &previous), 0);
    RaiseSignal();
    ::sigaction(SIGUSR1, &previous, nullptr);
    EXPECT_TRUE(std::any_of(writer.lines.begin(), writer.lines.end(), [](const std::string& line) {
        return line.find("(anonymous namespace)::RaiseSignal+") != std::string::npos;
    }));
    EXPECT_TRUE(std::any_of(writer.lines.begin(), writer.lines.end(), [](const std::string& line) {
        return line.find("  main+") != std::string::npos;
    }));
}

TEST(StackInfoTest, AWalkEndsAfter256Frames) {
    LinesWriter writer;
    Recurse(writer, 300);
    ASSERT_EQ(writer.lines.size(), 256u);
    for (const std::string& line : writer.lines)
        EXPECT_NE(line.find("Recurse+"), std::string::npos) << line;
}

TEST(StackInfoTest, RegistersThatPointNowhereEndTheWalkAtOnce) {
    StackInfo& stack = StackInfo::instance();
    UnreadablePage unreadable;
    const auto code = reinterpret_cast<uintptr_t>(&KnownFunction);
    uintptr_t on_stack[4] = {};
    const auto stack_pointer = reinterpret_cast<uintptr_t>(&on_stack[2]);

    LinesWriter no_code;
    stack.walk(nullptr, 0, stack_pointer, stack_pointer, no_code, StackInfo::kParametersAndLocals,
               nullptr);
    stack.walk(nullptr, unreadable.address(), stack_pointer, stack_pointer, no_code,
               StackInfo::kFrames, nullptr);
    stack.walk(nullptr, code, 0, 0, no_code, StackInfo::kFrames, nullptr);
    EXPECT_TRUE(no_code.lines.empty());

    // The frame's own code is known, but where its caller is cannot be read.
    LinesWriter no_stack;
    stack.walk(nullptr, code, unreadable.address() + 64, unreadable.address() + 64, no_stack,
               StackInfo::kParametersAndLocals, nullptr);
    ASSERT_FALSE(no_stack.lines.empty());
    EXPECT_NE(no_stack.lines[0].find("KnownFunction+0"), std::string::npos);
    EXPECT_EQ(std::count_if(no_stack.lines.begin(), no_stack.lines.end(), IsFrameLine), 1);

    // Readable memory that is no code of any module: the writer names the address.
    LinesWriter no_symbol;
    const auto data = reinterpret_cast<uintptr_t>(&on_stack[0]);
    stack.walk(nullptr, data, stack_pointer, 0, no_symbol, StackInfo::kFrames, nullptr);
    ASSERT_FALSE(no_symbol.lines.empty());
    EXPECT_TRUE(no_symbol.lines[0].ends_with("<no symbol>")) << no_symbol.lines[0];
    EXPECT_EQ(no_symbol.addresses.front(), data);
}

TEST(StackInfoTest, AFrameAddressThatDoesNotGrowEndsTheWalk) {
    const uintptr_t return_address = ReturnAddressInFramedFunction(64);
    ASSERT_NE(return_address, 0u);
    // A damaged stack whose saved frame pointer points at itself: unwinding it gives the
    // same frame address again and again.
    uintptr_t stack[8] = {};
    stack[4] = reinterpret_cast<uintptr_t>(&stack[4]);
    stack[5] = return_address;
    LinesWriter writer;
    StackInfo::instance().walk(nullptr, return_address, reinterpret_cast<uintptr_t>(&stack[4]),
                               reinterpret_cast<uintptr_t>(&stack[4]), writer, StackInfo::kFrames,
                               nullptr);
    ASSERT_EQ(writer.lines.size(), 2u);
    for (const std::string& line : writer.lines)
        EXPECT_NE(line.find("ReturnAddressInFramedFunction+"), std::string::npos) << line;
}

TEST(StackInfoTest, CollectedAddressesAreDescribedAndDumped) {
    std::deque<uintptr_t> addresses;
    CollectOuter(addresses, 0);
    ASSERT_GE(addresses.size(), 3u);
    std::deque<uintptr_t> skipped;
    CollectOuter(skipped, 1);
    ASSERT_FALSE(skipped.empty());
    EXPECT_EQ(skipped.front(), addresses[1]);
    StackInfo& stack = StackInfo::instance();
    const std::regex described("  .*stack_info_test\\.cpp \\((\\d+)\\): (.*)");
    std::smatch parts;
    const std::string leaf = stack.describe(addresses[0]);
    ASSERT_TRUE(std::regex_match(leaf, parts, described)) << leaf;
    EXPECT_EQ(parts[2], "(anonymous namespace)::CollectLeaf");
    const std::string outer = stack.describe(addresses[1]);
    ASSERT_TRUE(std::regex_match(outer, parts, described)) << outer;
    EXPECT_EQ(parts[2], "(anonymous namespace)::CollectOuter");

    TempDir dir;
    const std::string file = dir.File("stderr.txt");
    // freopen gives the file descriptor 2 to the file; dup2 points it back afterwards.
    std::fflush(stderr);
    const int saved = ::dup(2);
    ASSERT_NE(std::freopen(file.c_str(), "w", stderr), nullptr);
    addresses.push_front(0);  // no frame: left out
    StackInfo::StackCallbackPrintT<std::deque<uintptr_t>::const_iterator> print(addresses.begin(),
                                                                                addresses.end());
    stack.dump(print);
    std::fflush(stderr);
    ::dup2(saved, 2);
    ::close(saved);
    const std::string dumped = ReadFile(file);
    EXPECT_TRUE(dumped.starts_with("\n" + leaf + "\n\n" + outer + "\n")) << dumped;
}

TEST(StackInfoTest, AddressesAreDescribedByFunctionFileAndLine) {
    StackInfo& stack = StackInfo::instance();
    const std::string known = stack.describe(reinterpret_cast<uintptr_t>(&KnownFunction));
    std::smatch parts;
    ASSERT_TRUE(
        std::regex_match(known, parts, std::regex("  .*stack_info_test\\.cpp \\((\\d+)\\): (.*)")))
        << known;
    // The function's first instruction belongs to its opening line or to the first of its body.
    EXPECT_GE(std::stoi(parts[1]), kKnownFunctionLine);
    EXPECT_LE(std::stoi(parts[1]), kKnownFunctionLine + 1);
    EXPECT_EQ(parts[2], "(anonymous namespace)::KnownFunction");
    EXPECT_EQ(stack.describe(16),
              "0x0000000000000010 (File and line number not available): (Function name "
              "unavailable)");
    EXPECT_EQ(stack.describe(reinterpret_cast<uintptr_t>(&AllocatorFrame)), "");
}

}  // namespace

// An allocator's frame says nothing about who allocated: describe leaves it out. This
// function claims to be libstdc++'s operator new.
#line 1 "libstdc++-v3/libsupc++/new_op.cc"
namespace {
[[gnu::noinline]] int AllocatorFrame() {
    return KnownFunction(2);
}
}  // namespace
