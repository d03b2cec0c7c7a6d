// An archive over the bytes of a file or of a memory block, read and written in lines.
//
// Failure style: reading past the end gives an empty line and false, never an error.
// A loading archive does not own its bytes: they must outlive it.
#pragma once

#include <string>
#include <string_view>

namespace framework {

class Archive {
public:
    enum class Mode { Load, Store };

    // A loading archive over `bytes`; `path` is the file they came from, empty for memory.
    static Archive ForLoading(std::string_view bytes, std::string path);
    // A storing archive that collects what is written; `path` is empty for memory.
    static Archive ForStoring(std::string path);

    bool IsLoading() const { return mode_ == Mode::Load; }
    bool IsStoring() const { return mode_ == Mode::Store; }

    // The path of the file behind the archive; empty for a memory block.
    const std::string& GetFilePath() const { return path_; }

    // Reads the next line into `line`. A line ends at LF; one CR before the LF is dropped;
    // a last line without LF counts. At the end `line` is emptied and the answer is false.
    bool ReadString(std::string& line);
    // ReadString without a copy: `line` views the archive's input, valid while it lives.
    bool ReadLine(std::string_view& line);
    // True when every line has been read.
    bool AtEnd() const { return position_ >= input_.size(); }
    // How many lines have been read so far: the number of the line in hand, from 1.
    int LineNumber() const { return line_number_; }

    void WriteString(std::string_view text) { output_.append(text); }
    // Makes room for `size` bytes of output at once.
    void Reserve(size_t size) { output_.reserve(size); }
    // What a storing archive collected.
    const std::string& Bytes() const { return output_; }
    std::string TakeBytes() { return std::move(output_); }

private:
    Archive(Mode mode, std::string_view input, std::string path);

    Mode mode_;
    std::string_view input_;
    size_t position_ = 0;
    int line_number_ = 0;
    std::string output_;
    std::string path_;
};

}  // namespace framework
