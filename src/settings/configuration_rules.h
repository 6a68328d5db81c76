#pragma once

#include <optional>
#include <string>

#include "base/path_rules.h"
#include "platform/file_system.h"
#include "platform/volumes.h"
#include "settings/configuration.h"

namespace corvalence::settings {

/// The fields that the rules of the configuration sheet tie together.
struct SheetFields {
    bool backsUpDatabases = true;
    std::string suffix;
    bool besideDatabase = true;
    std::string backupFolder;
    bool mails = false;
    std::string recipient;

    /// As they stand in the store.
    static SheetFields of(const Configuration& configuration);
};

/// The first rule of the sheet that the fields break, as the message for the user; nothing where all hold.
/// The rules in their order: recipient, forbidden suffix, missing suffix, missing folder, folder that cannot
/// be used.
std::optional<std::string> findFault(const SheetFields& fields, platform::FileSystem& files,
                                     platform::Volumes& volumes, const base::PathRules& paths);

/// What is wrong with `text` as a user's entry for a key, by its form and its range on entry.
std::optional<std::string> findFault(const ConfigurationKey& key, const std::string& text);

}  // namespace corvalence::settings
