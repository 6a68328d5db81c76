#include "settings/configuration_rules.h"

#include "base/number_text.h"

namespace corvalence::settings {

namespace {

std::optional<std::string> findFolderFault(const std::string& folder, platform::FileSystem& files,
                                           platform::Volumes& volumes, const base::PathRules& paths) {
    const std::string location = paths.withSeparator(folder);
    try {
        const auto status = files.status(location, platform::Follow::Yes);
        if (status && status->kind == platform::FileKind::Folder) return std::nullopt;
        switch (volumes.driveType(volumes.rootOf(location))) {
            case platform::DriveType::Removable:
                return "There is no media in " + location;
            case platform::DriveType::Optical:
                return "There is no disc in " + location;
            case platform::DriveType::Remote:
                return location + " is an unaccessable network drive.";
            default:
                break;
        }
    } catch (const base::FileFailure&) {
        // No path that the system can make anything of.
    }
    if (location.starts_with("\\\\")) {
        return "Make sure you are connected to " + location + " and that you have access rights.";
    }
    return location + " is not a valid location.";
}

}  // namespace

SheetFields SheetFields::of(const Configuration& configuration) {
    SheetFields fields;
    fields.backsUpDatabases = configuration.isOn(key::kBackupDatabases);
    fields.suffix = configuration.text(key::kBackupSuffix);
    fields.besideDatabase = configuration.isOn(key::kBackupSameAsDatabase);
    fields.backupFolder = configuration.text(key::kBackupDatabaseFolder);
    fields.mails = configuration.isOn(key::kEmailEnabled);
    fields.recipient = configuration.text(key::kEmailRecipient);
    return fields;
}

std::optional<std::string> findFault(const SheetFields& fields, platform::FileSystem& files,
                                     platform::Volumes& volumes, const base::PathRules& paths) {
    const bool isAddress =
        fields.recipient.find('@') != std::string::npos && fields.recipient.find('.') != std::string::npos;
    if (fields.mails && !isAddress) return "The recipient address must be a full Email address";
    if (!fields.backsUpDatabases) return std::nullopt;
    if (fields.suffix == "D" || fields.suffix == "P" || fields.suffix == "R") {
        return "The character to append to the database name should not be 'D', 'P', or 'R'.";
    }
    if (fields.suffix == "S" || fields.suffix == "d" || fields.suffix == "a") {
        return "The character to append to the database name should not be 'S', 'd', or 'a'.";
    }
    if (fields.suffix.empty()) {
        return "If you want to backup each database you must enter a character to append to the database "
               "name.";
    }
    if (fields.besideDatabase) return std::nullopt;
    if (fields.backupFolder.empty()) {
        return "If you want to backup each database you must choose a location for the backup database.";
    }
    return findFolderFault(fields.backupFolder, files, volumes, paths);
}

std::optional<std::string> findFault(const ConfigurationKey& key, const std::string& text) {
    const std::string name(key.name);
    switch (key.form) {
        case Form::Number: {
            const auto value = base::scanInteger(text);
            if (!value || std::to_string(*value) != text || *value < key.lowestOnEntry ||
                *value > key.highestOnEntry) {
                return name + " takes a whole number from " + std::to_string(key.lowestOnEntry) + " to " +
                       std::to_string(key.highestOnEntry) + ".";
            }
            return std::nullopt;
        }
        case Form::Character:
            if (text.size() > 1 || (text.size() == 1 && (text.front() < 33 || text.front() > 126))) {
                return name + " takes one printable character.";
            }
            if (text.find_first_of("\\/:*?\"<>|") != std::string::npos) {
                return name + " takes a character that a file name may hold.";
            }
            return std::nullopt;
        case Form::Letter:
            if (text.size() != 1 || key.letters.find(text) == std::string_view::npos) {
                return name + " takes \"" + std::string(key.letters.substr(0, 1)) + "\" or \"" +
                       std::string(key.letters.substr(1, 1)) + "\".";
            }
            return std::nullopt;
        case Form::Text:
        case Form::Path:
            if (text.find_first_of("\r\n") != std::string::npos) return name + " takes a single line.";
            // What the settings hold is shown to anybody who may list them.
            if (key.name == key::kMailServer && text.find('@') != std::string::npos)
                return "A user or password does not belong in the mail server's address.";
            return std::nullopt;
        case Form::Paths:
            return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace corvalence::settings
