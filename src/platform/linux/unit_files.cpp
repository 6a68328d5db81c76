#include "platform/linux/unit_files.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>

#include "platform/linux/small_files.h"

namespace corvalence::platform::linux_system {

namespace {

/// What an administrator sets up. Devices, scopes and slices come and go with what runs.
constexpr std::array<std::string_view, 8> kTypes = {"automount", "mount", "path",   "service",
                                                    "socket",    "swap",  "target", "timer"};
/// A unit file is some lines; anything larger is none.
constexpr std::size_t kLongestUnit = 1024 * 1024;

std::string_view endingOf(std::string_view name) noexcept {
    const std::size_t stop = name.rfind('.');
    return stop == std::string_view::npos ? std::string_view() : name.substr(stop + 1);
}

bool isUnit(std::string_view name) noexcept {
    return std::find(kTypes.begin(), kTypes.end(), endingOf(name)) != kTypes.end() && name.front() != '.';
}

/// Takes the next line off the text, those that a backslash goes on behind joined to it by a blank.
std::string nextLine(std::string_view& text) {
    std::string line;
    for (bool goesOn = true; goesOn && !text.empty();) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view part = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const bool isComment = part.starts_with('#') || part.starts_with(';');
        if (isComment && !line.empty()) continue;  // between the parts of a line
        goesOn = !isComment && part.ends_with('\\');
        if (goesOn) part.remove_suffix(1);
        if (!line.empty()) line += ' ';
        line += trimmed(part);
    }
    return line;
}

/// "getty@.service" for "getty@tty1.service"; empty for a name that is no instance.
std::string templateOf(std::string_view name) {
    const std::size_t at = name.find('@');
    const std::size_t stop = name.rfind('.');
    if (at == std::string_view::npos || stop == std::string_view::npos || at + 1 >= stop) return {};
    return std::string(name.substr(0, at + 1)) + std::string(name.substr(stop));
}

/// Nothing where the file cannot be read; an empty text for a link to a device, as masked units are.
std::optional<std::string> contentOf(FileSystem& files, const std::string& path) {
    try {
        return readShort(files, path, kLongestUnit);
    } catch (const base::FileFailure& failure) {
        if (failure.cause() == base::Cause::InvalidFile) return std::string();
        return std::nullopt;
    }
}

/// What the folders hold, before any file is read.
struct Findings {
    std::map<std::string, std::string> units;                           // name, path
    std::map<std::string, std::map<std::string, std::string>> dropIns;  // of "x.service.d": name, path
    std::set<std::string> enabled;
};

void collectFolder(FileSystem& files, const UnitFolder& folder, Findings& findings) {
    for (const FolderEntry& entry : entriesOrNone(files, folder.path)) {
        const std::string path = folder.path + "/" + entry.name;
        const std::string_view ending = endingOf(entry.name);
        if (isUnit(entry.name) && entry.status.kind != FileKind::Folder) {
            findings.units.emplace(entry.name, path);
        } else if (ending == "d") {
            for (const FolderEntry& dropIn : entriesOrNone(files, path)) {
                if (endingOf(dropIn.name) != "conf") continue;
                findings.dropIns[entry.name].emplace(dropIn.name, path + "/" + dropIn.name);
            }
        } else if (folder.enables && (ending == "wants" || ending == "requires" || ending == "upholds")) {
            for (const FolderEntry& link : entriesOrNone(files, path))
                if (isUnit(link.name)) findings.enabled.insert(link.name);
        }
    }
}

/// Drop-ins count in the order of their names, wherever they lie; of two with one name the more special one
/// does.
void parseDropIns(FileSystem& files, const Findings& findings, UnitFile& unit) {
    std::map<std::string, std::string> chosen;
    for (const std::string& name : {unit.name, templateOf(unit.name), std::string(unit.type())}) {
        const auto folder = findings.dropIns.find(name + ".d");
        if (folder != findings.dropIns.end()) chosen.insert(folder->second.begin(), folder->second.end());
    }
    for (const auto& [name, path] : chosen)
        if (const auto text = contentOf(files, path)) unit.parse(*text);
}

}  // namespace

void UnitFile::parse(std::string_view text) {
    std::string section;
    while (!text.empty()) {
        const std::string line = nextLine(text);
        if (line.starts_with('[') && line.ends_with(']')) section = line.substr(1, line.size() - 2);
        const std::size_t sign = line.find('=');
        if (line.starts_with('#') || line.starts_with(';') || line.starts_with('[') ||
            sign == std::string::npos)
            continue;
        Assignment assignment{section, std::string(trimmed(std::string_view(line).substr(0, sign))),
                              std::string(trimmed(std::string_view(line).substr(sign + 1)))};
        if (assignment.value.empty()) {
            std::erase_if(assignments_, [&](const Assignment& earlier) {
                return earlier.section == assignment.section && earlier.key == assignment.key;
            });
        } else {
            assignments_.push_back(std::move(assignment));
        }
    }
}

std::vector<std::string> UnitFile::values(std::string_view section, std::string_view key) const {
    std::vector<std::string> values;
    for (const Assignment& assignment : assignments_)
        if (assignment.section == section && assignment.key == key) values.push_back(assignment.value);
    return values;
}

std::string UnitFile::value(std::string_view section, std::string_view key) const {
    const std::vector<std::string> all = values(section, key);
    return all.empty() ? std::string() : all.back();
}

bool UnitFile::has(std::string_view section) const {
    return std::any_of(assignments_.begin(), assignments_.end(),
                       [&](const Assignment& assignment) { return assignment.section == section; });
}

std::string_view UnitFile::type() const noexcept {
    return endingOf(name);
}

std::vector<UnitFolder> systemUnitFolders() {
    return {{"/etc/systemd/system.control", true},    {"/run/systemd/system.control", true},
            {"/run/systemd/generator.early", false},  {"/etc/systemd/system", true},
            {"/etc/systemd/system.attached", true},   {"/run/systemd/system", true},
            {"/run/systemd/system.attached", true},   {"/run/systemd/generator", true},
            {"/usr/local/lib/systemd/system", false}, {"/usr/lib/systemd/system", false},
            {"/lib/systemd/system", false},           {"/run/systemd/generator.late", true}};
}

std::vector<UnitFile> readUnitFiles(FileSystem& files, const std::vector<UnitFolder>& folders) {
    Findings findings;
    for (const UnitFolder& folder : folders)
        collectFolder(files, folder, findings);
    for (const std::string& name : findings.enabled) {
        const auto source = findings.units.find(templateOf(name));
        if (source != findings.units.end()) findings.units.emplace(name, source->second);
    }
    std::vector<UnitFile> units;
    for (const auto& [name, path] : findings.units) {
        const auto text = contentOf(files, path);
        if (!text) continue;
        UnitFile unit;
        unit.name = name;
        unit.isMasked = text->empty();
        unit.isEnabled = findings.enabled.contains(name);
        unit.parse(*text);
        if (!unit.isMasked) parseDropIns(files, findings, unit);
        units.push_back(std::move(unit));
    }
    return units;
}

}  // namespace corvalence::platform::linux_system
