// The game projects of this machine: the roster that the project configuration tool writes
// beside the tools, and which of its projects is the current one.
//
// The roster is a Boost.Serialization text archive of this object: the list (name and root
// of each project) and the index of the current one. A project's cache folder is not kept
// there; it is read from the project's own meta file whenever the project is selected.
//
// Failure style: load() throws Projects::Exception when there is no roster, and a damaged
// roster throws boost::archive::archive_exception; the list is then as it was. Everything
// else reports nothing: a missing backup or meta file is no error. No lock: one thread owns
// the registry.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "core_exception.h"
#include "core_singleton.h"

namespace boost::serialization {
class access;
}

namespace Core {

class Projects : public Singleton<Projects> {
public:
    struct ProjectDef {
        std::string name;      // as shown to users
        std::string root;      // the project's root folder
        std::string cacheDir;  // from the project's meta file; never stored in the roster
    };

    // Thrown by load() only.
    class Exception : public Core::Exception {
    public:
        using Core::Exception::Exception;
    };

    // In the tools_root folder.
    static constexpr const char* kRosterName = "ProjectRoster.txt";
    static constexpr const char* kBackupName = "ProjectRoster.txt.bak";
    // In a project's root folder: "key = value" lines, of which cacheDir is read.
    static constexpr const char* kMetaName = "vorlanProject.meta";

    // Replaces the list with the roster's and selects its current project. Throws
    // Projects::Exception when the roster cannot be opened.
    void load();
    // The same from the backup; does nothing when the backup cannot be opened.
    void load_backup();
    // Write the roster or its backup, replacing the file whole. True when written; a
    // failure leaves the file as it was.
    bool save() const;
    bool save_backup() const;

    // Makes the project at `index` current (-1 when there is none such) and reads its
    // cacheDir from its meta file, if the file is there and names one.
    void select(int index);
    // The current project's root; empty while none is current.
    std::string current_root() const;
    void add(const ProjectDef& project);
    // Empties the list; no project is current.
    void clear();

    const std::vector<ProjectDef>& projects() const { return projects_; }
    int current() const { return current_; }

private:
    // The halves of the roster's archive, by the names Boost.Serialization calls.
    friend class boost::serialization::access;
    template <class Archive>
    void save(Archive& archive, unsigned version) const;
    template <class Archive>
    void load(Archive& archive, unsigned version);
    template <class Archive>
    void serialize(Archive& archive, unsigned version);

    void read_roster(std::istream& roster);
    bool write_roster(const char* name) const;

    std::vector<ProjectDef> projects_;
    int current_ = -1;
};

}  // namespace Core
