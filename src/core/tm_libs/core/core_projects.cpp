#include "core_projects.h"

#include <boost/archive/text_oarchive.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/regex.hpp>
#include <boost/serialization/split_member.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "core_atomic_file.h"
#include "core_paths.h"
#include "core_roster_archive.h"

namespace fs = boost::filesystem;

namespace Core {
namespace {

fs::path roster_path(const char* name) {
    return path(PathKind::tools_root) / name;
}

// The "key = value" lines of a meta file. A comment runs from ';' to the end of its line;
// lines left empty, and lines without '=', say nothing.
std::map<std::string, std::string> read_meta_values(std::istream& meta) {
    static const boost::regex kTrailingSpaceAndComment(R"(\s*(;.*)?$)");
    static const boost::regex kKeyAndValue(R"((.*?)\s*=\s*(.*?))");
    std::map<std::string, std::string> values;
    std::string line;
    while (std::getline(meta, line)) {
        line = boost::regex_replace(line, kTrailingSpaceAndComment, "");
        boost::smatch pair;
        if (!line.empty() && boost::regex_match(line, pair, kKeyAndValue))
            values[pair[1]] = pair[2];
    }
    return values;
}

}  // namespace

// Only the name and the root are stored; the cache folder belongs to the project's meta file.
template <class Archive>
void serialize(Archive& archive, Projects::ProjectDef& project, unsigned /*version*/) {
    // The '&' is the archive's operator, not a reference.
    // clang-format off
    archive & project.name & project.root;
    // clang-format on
}

template <class Archive>
void Projects::save(Archive& archive, unsigned /*version*/) const {
    archive << projects_ << current_;
}

// Read aside and kept only whole, so that a damaged roster leaves the list as it was.
template <class Archive>
void Projects::load(Archive& archive, unsigned /*version*/) {
    std::vector<ProjectDef> projects;
    int current = -1;
    archive >> projects >> current;
    projects_ = std::move(projects);
    current_ = current;
}

template <class Archive>
void Projects::serialize(Archive& archive, unsigned version) {
    boost::serialization::split_member(archive, *this, version);
}

void Projects::load() {
    std::ifstream roster(roster_path(kRosterName).string());
    if (!roster)
        throw Exception(
            "No projects defined - Please run ProjectRoster\n(Program Files->Vorlan->Tools)");
    read_roster(roster);
}

void Projects::load_backup() {
    std::ifstream roster(roster_path(kBackupName).string());
    if (roster) read_roster(roster);
}

bool Projects::save() const {
    return write_roster(kRosterName);
}

bool Projects::save_backup() const {
    return write_roster(kBackupName);
}

void Projects::read_roster(std::istream& roster) {
    const std::string text{std::istreambuf_iterator<char>(roster),
                           std::istreambuf_iterator<char>()};
    std::istringstream stream(text);
    Detail::RosterInputArchive archive(stream, text.size());
    archive >> *this;
    select(current_);
}

bool Projects::write_roster(const char* name) const {
    std::ostringstream text;
    {
        // The archive ends its text when it is destroyed.
        boost::archive::text_oarchive archive(text);
        archive << *this;
    }
    std::string error;
    return write_file_atomically(roster_path(name).string(), text.str(), error);
}

void Projects::select(int index) {
    const bool listed = index >= 0 && static_cast<size_t>(index) < projects_.size();
    current_ = listed ? index : -1;
    if (!listed) return;
    ProjectDef& project = projects_[static_cast<size_t>(index)];
    std::ifstream meta((fs::path(project.root) / kMetaName).string());
    if (!meta) return;
    const auto values = read_meta_values(meta);
    if (const auto cache = values.find("cacheDir"); cache != values.end())
        project.cacheDir = cache->second;
}

std::string Projects::current_root() const {
    return current_ >= 0 ? projects_[static_cast<size_t>(current_)].root : std::string();
}

void Projects::add(const ProjectDef& project) {
    projects_.push_back(project);
}

void Projects::clear() {
    projects_.clear();
    current_ = -1;
}

}  // namespace Core
