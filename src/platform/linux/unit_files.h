#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace corvalence::platform::linux_system {

/// A unit as the files of the service manager describe it: its own file with all drop-ins behind it, in the
/// form of systemd.syntax(7).
class UnitFile {
  public:
    std::string name;        // "ssh.service"; an instance of a template by its own name
    bool isMasked = false;   // a link to nothing, or an empty file
    bool isEnabled = false;  // the administrator or this run of the system wants it started

    /// Takes over every assignment of a unit file's text. An empty one takes back those of its name before
    /// it.
    void parse(std::string_view text);
    /// All values of a name, in their order.
    std::vector<std::string> values(std::string_view section, std::string_view key) const;
    /// The value that counts where only one can; empty where there is none.
    std::string value(std::string_view section, std::string_view key) const;
    bool has(std::string_view section) const;

    /// "service", the ending of the name.
    std::string_view type() const noexcept;

  private:
    struct Assignment {
        std::string section;
        std::string key;
        std::string value;
    };
    std::vector<Assignment> assignments_;
};

/// Folders of unit files, the ones that count most first.
struct UnitFolder {
    std::string path;
    /// Whether links in its ".wants" and ".requires" folders are the administrator's word, and not the
    /// vendor's.
    bool enables = false;
};

/// The folders in which systemd looks for the units of the system, as systemd.unit(5) lists them.
std::vector<UnitFolder> systemUnitFolders();

/// Every unit that has a file below the folders, and every instance of a template that is enabled there,
/// ordered by the bytes of their names. What cannot be read is passed over: a folder may be missing, and a
/// file may go while it is looked at.
std::vector<UnitFile> readUnitFiles(FileSystem& files, const std::vector<UnitFolder>& folders);

}  // namespace corvalence::platform::linux_system
