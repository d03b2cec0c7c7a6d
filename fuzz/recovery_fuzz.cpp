// Any bytes as a recovery copy: the reader must end, with a whole copy or a reason, and never
// read or write out of bounds. A copy it accepts must write back to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "model/RecoveryFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::string reason;
    const std::optional<RecoveryCopy> copy = DecodeRecoveryCopy(bytes, reason);
    if (!copy) return 0;
    std::string written;
    if (!EncodeRecoveryCopy(*copy, written)) std::abort();
    std::string again;
    const std::optional<RecoveryCopy> reread = DecodeRecoveryCopy(written, reason);
    if (!reread || !EncodeRecoveryCopy(*reread, again) || again != written) std::abort();
    return 0;
}
