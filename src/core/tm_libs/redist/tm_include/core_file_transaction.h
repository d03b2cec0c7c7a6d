// Replacing several files as one: either every file takes its new bytes or every file on disk
// stays exactly as it was.
//
// Each file is written whole to a temporary beside its target first; only when all are
// written are they renamed into place, in the order they were staged. A rename that fails
// puts back the files already replaced.
//
// Failure style: false, with failure() naming the file and the reason; the transaction is
// then over and leaves no temporary behind.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Core {

struct FileFailure {
    std::string path;    // the file as the caller named it; empty when it had no name
    std::string reason;  // in the words of the system, or of the checks below
    bool read_only = false;
};

// The temporary file of a stage whose content is made piece by piece: a file too large to
// hold in memory, or one whose start is known only at its end.
class StagedFile {
public:
    explicit StagedFile(int descriptor) : descriptor_(descriptor) {}

    // Appends `bytes`; false when they cannot be written (failed() is then set).
    bool write(std::string_view bytes);
    // Writes `bytes` at `offset`, over what was written there; appends continue at the end.
    bool write_at(uint64_t offset, std::string_view bytes);
    bool failed() const { return error_ != 0; }
    int error() const { return error_; }  // the errno of the first failed write

private:
    bool succeeded(bool written);

    int descriptor_;
    int error_ = 0;
};

class FileTransaction {
public:
    FileTransaction() = default;
    // A transaction never committed removes its temporaries: the files stay as they were.
    ~FileTransaction();
    FileTransaction(const FileTransaction&) = delete;
    FileTransaction& operator=(const FileTransaction&) = delete;

    // Writes `bytes` to a temporary file beside `path` and flushes it to the disk. A symbolic
    // link is followed: its target is what will be replaced. A file that exists keeps its
    // permission bits; one without any write permission (or that this process may not
    // write) is refused as read-only before anything is written, and so is a folder.
    bool stage(const std::string& path, std::string_view bytes);
    // As above, with the bytes that `produce` writes to the temporary file. When it answers
    // false nothing is staged; the reason is the system's when a write failed.
    bool stage(const std::string& path, const std::function<bool(StagedFile&)>& produce);
    // Renames every staged file into place, in staging order. The old files are kept under
    // temporary names until all renames are done, so a failure can put them back. Hard links
    // to a replaced file keep the old bytes.
    bool commit();

    const FileFailure& failure() const { return failure_; }

private:
    struct Staged {
        std::string path;       // as the caller named it
        std::string target;     // the file that is replaced, links followed
        std::string temporary;  // the new bytes
        std::string backup;     // the old file during commit; empty when there was none
    };

    bool fail(const std::string& path, std::string reason, bool read_only = false);
    bool keep_old_file(Staged& file);
    void roll_back(size_t replaced);
    void remove_leftovers();

    std::vector<Staged> staged_;
    FileFailure failure_;
};

namespace Detail {
// For tests only: makes the `n`th write, flush or rename of a file from now on fail as a full
// disk would (counted from 1 over every transaction); 0 stops it. Putting old files back
// after a failure is never made to fail.
void fail_file_step(int n);
}  // namespace Detail

}  // namespace Core
