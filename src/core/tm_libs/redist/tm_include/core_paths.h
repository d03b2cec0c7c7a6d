// Where things are: the folders of the current project, of the tools and of the user's
// data; safe names for temporary files; and the path helpers the suite's programs share.
//
// Paths are native. The relative-path helpers work on the '\' form that project files
// use, so that their answers are the same on every platform.
//
// Failure style: empty results and false; only find_project_meta throws (Core::Exception).
// The two settings are plain statics without a lock: set them before other threads ask.
#pragma once

#include <boost/filesystem/path.hpp>
#include <string>

namespace Core {

// The folder kinds of path(); values are stable, a value above 8 names no folder.
enum class PathKind : unsigned {
    project_root = 0,      // the current project's root
    tools_root = 1,        // the running program's folder, or the override
    utils = 2,             // tools_root, then "/utils"
    tools = 3,             // project_root, then "tools"
    application_data = 4,  // the user's data folder, then the application data name
    asset = 5,             // project_root, then "asset"
    exports = 6,           // project_root, then "export" (the word is taken in C++)
    data = 7,              // project_root, then "data"
    temp = 8,              // project_root, then "temp"
};

// The folder of `kind`. Without `use_project` the project's root is the empty path, so
// the kinds built on it are relative ("asset"). The running program's folder ends in '/';
// application_data is created when missing. An unknown kind gives the empty path.
boost::filesystem::path path(PathKind kind, bool use_project = true);

// Replaces the running program's folder as tools_root; empty goes back to it.
void set_tools_root(const std::string& folder);
// The last element of application_data: the $XDG_DATA_HOME (or ~/.local/share) folder of
// this application. Empty until set.
void set_application_data_name(const std::string& name);

// `relative` in the project's data folder.
boost::filesystem::path data_path(const boost::filesystem::path& relative);
// `relative` in the project's folder of `kind` if the IO manager finds it there; otherwise
// `relative` in that kind's folder without the project.
boost::filesystem::path resolve(const boost::filesystem::path& relative, PathKind kind);
// Whether the IO manager finds `relative` in the project's folder of `kind`; false when
// there is no IO manager.
bool exists_in(const boost::filesystem::path& relative, PathKind kind);

// The working folder, whole however long it is; empty when it cannot be had.
boost::filesystem::path current_directory();
// The file of the loaded program or library that holds `address`; for null, the running
// program. Whole however long it is; empty when it cannot be told.
boost::filesystem::path module_path(const void* address = nullptr);
// The running program's folder with a '/' at the end; empty when it cannot be told.
std::string program_folder();
// Creates `directory` and its parents when missing. True when the folder exists after.
bool ensure_directory(const boost::filesystem::path& directory);
// Sets the last-write time of an existing file to now. False for a missing file or a folder.
bool touch(const boost::filesystem::path& file);
// Copies `from` onto `to`, replacing a file there, after creating `to`'s folder. The copy
// is written whole, by the atomic writer, and carries the time of copying. False when
// `from` cannot be read or `to` cannot be written; `to` is then as it was.
bool copy_file(const boost::filesystem::path& from, const boost::filesystem::path& to);

// Copies with each '/' turned to '\', or each '\' to '/'.
std::string backslashes(std::string path);
std::string slashes(std::string path);
// `file` relative to `directory`, both taken in the '\' form, and given in that form:
// ".\name" inside the folder, "..\" once for each folder to climb. Components compare
// without regard to ASCII case. False when the two share no root: one absolute and one
// relative, or relative ones that differ in their first component; `out` is then empty.
bool relative_to(const boost::filesystem::path& file, const boost::filesystem::path& directory,
                 std::string& out);
// `path` when `file` and `directory` are the same path; otherwise `path` with `file`
// relative to `directory` appended as one more element (nothing when there is none).
boost::filesystem::path rebase(const boost::filesystem::path& file,
                               const boost::filesystem::path& directory,
                               const boost::filesystem::path& path);
// Whether an existing `path` lies in `directory`: the text of its absolute parent folder
// contains that of the absolute `directory`, both lower-cased. A text test, so a folder
// whose name merely contains the other's also counts. False when `path` does not exist.
bool is_inside(const boost::filesystem::path& path, const boost::filesystem::path& directory);

// Lets a program work without a roster: the projects registry holds one unnamed project
// with this root, selected. Does nothing while there is no registry.
void set_project_root(const boost::filesystem::path& root);
// The meta file in `start` or the nearest folder above it that has one. Throws
// Core::Exception("Could not find vorlanProject.meta file") when none has.
boost::filesystem::path find_project_meta(const boost::filesystem::path& start);

// A name for a temporary file that does not exist yet: "$TMPDIR/core_tmp_" and six random
// characters. Without a usable temporary folder, a name in the running program's folder
// made from the local time: "core_tmp_HH-MM-SS-mmm". Only a name: nothing is created.
std::string temp_file_name();
// The version resource of a program file; always empty here, as ELF files carry none.
std::string file_version(const boost::filesystem::path& file);

}  // namespace Core
