// All read access of the suite: one manager over an ordered list of providers (loose files,
// and packs that a caller mounts), answering open, exists and find.
//
// Failure style: open answers an empty pointer and exists false; only open_or_throw throws.
// Every step is logged on "system.io". No locks: the main thread is the only caller.
#pragma once

#include <boost/filesystem/path.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core_singleton.h"

namespace Core {

// A readable stream. Reads never go past the end.
class InputBufferImpl {
public:
    InputBufferImpl() = default;
    virtual ~InputBufferImpl() = default;
    InputBufferImpl(const InputBufferImpl&) = delete;
    InputBufferImpl& operator=(const InputBufferImpl&) = delete;

    virtual void close() = 0;
    virtual uint64_t size() const = 0;
    virtual uint64_t tell() const = 0;
    virtual bool eof() const = 0;
    // Reads up to `count` bytes; answers how many were read.
    virtual unsigned read(void* buffer, unsigned count) = 0;
    // The next byte as 0 to 255, or -1 at the end.
    virtual int get() = 0;
    // To `position` from the start; false (and no move) past the end.
    virtual bool seek(uint64_t position) = 0;
    // By `offset` from here; false (and no move) outside the content.
    virtual bool skip(int64_t offset) = 0;
    // The whole content in memory, owned by the buffer; null if it cannot be had.
    virtual const uint8_t* data() = 0;
    virtual bool from_pack() const = 0;
    // True once a read met content that cannot be delivered (a pack block that is corrupt or
    // cut short). A read answers the bytes delivered before the fault; later reads answer none.
    virtual bool failed() const { return false; }
};

// The position keeping that every buffer over a known number of bytes shares: seeks and
// skips that would leave the content fail and do not move.
class PositionedBufferImpl : public InputBufferImpl {
public:
    uint64_t tell() const override { return position_; }
    bool eof() const override { return position_ >= size(); }
    bool seek(uint64_t position) override;
    bool skip(int64_t offset) override;

protected:
    // How many of `count` bytes can be read from here.
    uint64_t readable(uint64_t count) const;
    uint64_t position_ = 0;
};

class InputBufferProvider {
public:
    virtual ~InputBufferProvider() = default;
    virtual std::shared_ptr<InputBufferImpl> open(const std::wstring& path) = 0;
    virtual std::shared_ptr<InputBufferImpl> open(const std::string& path) = 0;
    virtual bool exists(const std::string& path) = 0;
    virtual void clear_cache() {}
    // Names matching `pattern` (folded); flag 4 searches below too. The strings belong to
    // the provider and stay valid while it and its cache stand.
    virtual std::vector<const char*> find(const std::string& /*pattern*/, unsigned /*flags*/) {
        return {};
    }
    virtual const char* name() const = 0;
    virtual bool file_changed(const std::string& /*path*/) { return false; }
    virtual void directory_changed(const std::string& /*path*/) {}
};

class FileBufferProvider;

// The providers in search order, with the loose-file provider always among them.
struct IOProviders {
    IOProviders();
    std::shared_ptr<FileBufferProvider> file_provider;
    std::vector<std::shared_ptr<InputBufferProvider>> providers;
};

class IOManager : public Singleton<IOManager> {
public:
    static constexpr unsigned kFindRecursive = 4;

    IOManager();
    ~IOManager() override;

    std::shared_ptr<InputBufferImpl> open(const std::string& path);
    std::shared_ptr<InputBufferImpl> open(const char* path) { return open(std::string(path)); }
    // Wide paths are never filtered.
    std::shared_ptr<InputBufferImpl> open(const std::wstring& path);
    std::shared_ptr<InputBufferImpl> open(const wchar_t* path) { return open(std::wstring(path)); }
    // Never empty: throws std::ios_base::failure("Unable to open PATH").
    std::shared_ptr<InputBufferImpl> open_or_throw(const char* path);
    std::shared_ptr<InputBufferImpl> open_or_throw(const std::string& path);
    std::shared_ptr<InputBufferImpl> open_or_throw(const wchar_t* path);

    bool exists(const std::string& path);
    bool exists(const char* path) { return exists(std::string(path)); }
    bool exists(const boost::filesystem::path& path) { return exists(path.generic_string()); }
    // Every provider's names for `pattern`, once each, in byte order, filtered.
    std::vector<const char*> find(const std::string& pattern, unsigned flags);

    // Mounts a pack file, or every "*.pack" of a folder (below io.packs_root when it is set)
    // in name order. Loads the filter list named by io.filtered first, once. A pack file that
    // cannot be read is left out and the answer is still true; a folder is mounted whole or
    // not at all, and false when one of its packs cannot be read.
    bool mount(const std::string& path);
    // Puts a provider in the search order: in front, or behind with io.file_first.
    void mount_provider(std::shared_ptr<InputBufferProvider> provider);

    // Reads a filter file: "+pattern" includes, any other first character excludes; a
    // later line outranks an earlier one.
    void load_filter(const std::string& path);
    void load_filter(const char* path) { load_filter(std::string(path)); }
    void load_filter(const boost::filesystem::path& path) { load_filter(path.string()); }
    bool filtered() const { return filtered_; }
    // True when the filter shuts `path` out.
    bool excluded(const std::string& path) const;

    // The disk changed behind the cache: a file was written, or one of a folder deleted.
    bool file_changed(const std::string& path);
    void directory_changed(const std::string& path);

    FileBufferProvider& file_provider() { return *providers_->file_provider; }

private:
    struct FilterRule {
        bool include;
        std::string pattern;
    };

    bool mount_folder(const std::string& path);

    std::unique_ptr<IOProviders> providers_;
    std::vector<FilterRule> filter_rules_;
    bool filtered_ = false;
};

}  // namespace Core
