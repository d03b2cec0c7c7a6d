// The machine and system lines of a report's header, on Linux. The numbers keep the meaning
// the report's readers know: the architecture by the numbering of the reports from the other
// platform (9 for x86-64), the level as the processor family and the revision as model and
// stepping, both from cpuid; the mask is the process's CPU affinity. The OS line carries the
// three numbers of the kernel release and the kernel's version text.
#include <cpuid.h>
#include <sched.h>
#include <sys/utsname.h>
#include <cstdint>
#include <cstdlib>

#include "core_report_text.h"

namespace Core::Detail {
namespace {

constexpr int kArchitectureAmd64 = 9;

struct ProcessorSignature {
    unsigned family = 0;
    unsigned model = 0;
    unsigned stepping = 0;
};

// Family and model with their extended bits, as the processor's documentation adds them.
ProcessorSignature processor_signature() {
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    ProcessorSignature signature;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0) return signature;
    signature.stepping = eax & 0xF;
    signature.model = (eax >> 4) & 0xF;
    signature.family = (eax >> 8) & 0xF;
    if (signature.family == 0xF) signature.family += (eax >> 20) & 0xFF;
    if (signature.family == 0x6 || signature.family >= 0xF)
        signature.model += ((eax >> 16) & 0xF) << 4;
    return signature;
}

// The first 64 processors this process may run on, one bit each.
unsigned long long affinity_mask() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) != 0) return 0;
    unsigned long long mask = 0;
    for (unsigned cpu = 0; cpu < 64; ++cpu)
        if (CPU_ISSET(cpu, &set)) mask |= 1ULL << cpu;
    return mask;
}

// "6.1.0-18-amd64" gives 6, 1 and 0; missing numbers are 0.
void release_numbers(const char* release, int (&numbers)[3]) {
    const char* at = release;
    for (int& number : numbers) {
        char* end = nullptr;
        const unsigned long value = std::strtoul(at, &end, 10);
        number = end != at && value <= 0xFFFF ? static_cast<int>(value) : 0;
        if (end == at || *end != '.') return;
        at = end + 1;
    }
}

}  // namespace

void write_processor_line(BugReport::ReportFile& file) {
    const ProcessorSignature signature = processor_signature();
    file.print("Processor: Architecture = %d, level = %u, rev = %04X, mask = %02llX\r\n",
               kArchitectureAmd64, signature.family, (signature.model << 8) | signature.stepping,
               affinity_mask());
}

void write_os_line(BugReport::ReportFile& file) {
    utsname system{};
    int numbers[3] = {0, 0, 0};
    if (uname(&system) == 0) release_numbers(system.release, numbers);
    file.print("OS: maj = %d, min = %d, build = %d, '%s'\r\n", numbers[0], numbers[1], numbers[2],
               system.version);
}

}  // namespace Core::Detail
