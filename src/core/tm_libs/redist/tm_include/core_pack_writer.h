// Writing a pack: every file under a folder as one pack that the IO manager can mount.
//
// Names are the files' paths relative to the folder with `/`, in the order of
// compare_pack_names. Blocks are compressed with LZO1X-1 and stored raw when that does not
// make them smaller. The pack is written beside its path and renamed into place, so a write
// that fails leaves the old file as it was; the entries are streamed from their files, so a
// pack need not fit in memory.
//
// Failure style: the result says which side failed, and `error` says why in a sentence that
// names the file. Thread safety: none needed; nothing is shared.
#pragma once

#include <string>

namespace Core {

enum class PackWriteResult {
    written,
    // The folder cannot be packed: it cannot be read, holds no file, holds a file too large
    // for a pack or two names that differ only in case, or a file changed while it was read.
    input_failed,
    // The pack cannot be written at its path.
    output_failed,
};

PackWriteResult write_pack(const std::string& pack_path, const std::string& folder,
                           std::string& error);

}  // namespace Core
