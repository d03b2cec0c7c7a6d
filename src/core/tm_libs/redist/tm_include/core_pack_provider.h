// A pack file as a provider of the IO manager: `open`, `exists` and `find` answer from the
// pack's table, which is kept whole in memory, so that finding a name costs no disk access.
//
// Names are found without regard to ASCII case, by a binary search in the table's name
// order after a quick test against the first and the last name. `find` compares the folder
// of its pattern with case, as the names stand.
//
// Failure style: load answers false (error() says why) and the provider stays unmounted;
// open answers an empty pointer. Every open, data() and close is logged at trace on
// "system.io". Thread safety: none; the IO manager's thread is the only caller.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core_io.h"
#include "core_pack_file.h"

namespace Core {

class PackBufferProvider : public InputBufferProvider {
public:
    // Opens the pack at `path` and loads its table; the path is also the provider's name.
    // Called once, before the provider is mounted.
    bool load(const char* path);
    const std::string& error() const { return error_; }

    std::shared_ptr<InputBufferImpl> open(const std::wstring& path) override;
    std::shared_ptr<InputBufferImpl> open(const std::string& path) override;
    bool exists(const std::string& path) override;
    std::vector<const char*> find(const std::string& pattern, unsigned flags) override;
    const char* name() const override { return path_.c_str(); }

    // The loaded pack, or null before a load that succeeded: for callers that list it.
    const PackFile* pack() const { return pack_.get(); }

private:
    std::string path_;
    std::string error_;
    std::shared_ptr<PackFile> pack_;
};

}  // namespace Core
