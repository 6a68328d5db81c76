#include "platform/linux/machine_keys.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/linux/mount_table.h"
#include "platform/linux/settings_text.h"
#include "platform/linux/small_files.h"

namespace corvalence::platform::linux_system {

namespace {

constexpr std::size_t kLongest = 16 * 1024 * 1024;

std::vector<std::string> fieldsOf(std::string_view line, char separator) {
    std::vector<std::string> fields;
    for (std::size_t at = 0; at <= line.size();) {
        const std::size_t end = std::min(line.find(separator, at), line.size());
        fields.emplace_back(line.substr(at, end - at));
        at = end + 1;
    }
    return fields;
}

/// The lines of a file that are neither empty nor comments, each as its fields.
std::vector<std::vector<std::string>> rowsOf(FileSystem& files, const std::string& path, char separator) {
    std::vector<std::vector<std::string>> rows;
    const std::string text = shortContent(files, path, kLongest).value_or("");
    for (const std::string& line : fieldsOf(text, '\n'))
        if (!line.empty() && line.front() != '#') rows.push_back(fieldsOf(line, separator));
    return rows;
}

std::string lineIn(FileSystem& files, const std::string& path) {
    const std::string text = shortContent(files, path, kLongest).value_or("");
    return text.substr(0, text.find('\n'));
}

/// Of each device below `folder` the texts of some of its files, those that it has.
template <std::size_t N>
void addDevices(FileSystem& files, const std::string& folder, const std::string& name,
                const std::array<const char*, N>& properties, GatheredKeys::Keys& keys) {
    for (const FolderEntry& device : entriesOrNone(files, folder)) {
        std::map<std::string, KeyText> values;
        for (const char* property : properties) {
            const std::string file = folder + "/" + device.name + "/" + property;
            std::string text = lineIn(files, file);
            if (!text.empty()) values.emplace(property, KeyText(std::move(text), isForRootAlone(file)));
        }
        if (!values.empty()) keys[{"Devices", name, keyName(device.name)}] = std::move(values);
    }
}

}  // namespace

GatheredKeys::Keys accountKeys(FileSystem& files, const std::string& folder) {
    constexpr std::size_t kAccountFields = 7;
    constexpr std::size_t kGroupFields = 4;
    GatheredKeys::Keys keys;
    for (const auto& row : rowsOf(files, folder + "/passwd", ':')) {
        if (row.size() != kAccountFields) continue;
        // Whether the account has a password here, and never the password.
        keys[{"Accounts", keyName(row[0])}] = {{"Password", row[1] == "x"    ? "shadowed"
                                                            : row[1].empty() ? "none"
                                                                             : "given"},
                                               {"User", row[2]},
                                               {"Group", row[3]},
                                               {"Name", row[4]},
                                               {"Home", row[5]},
                                               {"Shell", row[6]}};
    }
    for (const auto& row : rowsOf(files, folder + "/group", ':')) {
        if (row.size() != kGroupFields) continue;
        keys[{"Groups", keyName(row[0])}] = {{"Group", row[2]}, {"Members", row[3]}};
    }
    return keys;
}

GatheredKeys::Keys fileTypeKeys(FileSystem& files, const std::string& folder) {
    GatheredKeys::Keys keys;
    // weight:type:glob[:flags]
    for (const auto& row : rowsOf(files, folder + "/globs2", ':'))
        if (row.size() >= 3) keys[{keyName(row[2])}][row[1]] = row[0];
    return keys;
}

GatheredKeys::Keys applicationKeys(FileSystem& files, const std::vector<std::string>& lists) {
    GatheredKeys::Keys keys;
    for (const std::string& list : lists) {
        const auto settings = parseSettings(shortContent(files, list, kLongest).value_or(""));
        if (!settings) continue;
        for (const SettingsSection& section : settings->sections) {
            for (const auto& [type, programs] : section.values)
                keys[{keyName(type)}][section.name + ", " + list] = programs;
        }
    }
    return keys;
}

GatheredKeys::Keys machineKeys(FileSystem& files, const std::string& proc, const std::string& sys) {
    GatheredKeys::Keys keys;
    keys[{"Boot"}]["Command Line"] = lineIn(files, proc + "/cmdline");
    for (const auto& row : rowsOf(files, proc + "/modules", ' '))
        if (row.size() > 1) keys[{"Modules"}][row[0]] = row[1] + " bytes";
    const std::string mounts = shortContent(files, proc + "/self/mountinfo", kLongest).value_or("");
    for (const Mount& mount : parseMounts(mounts)) {
        // Made and unmade for every session and service.
        if (mount.point.starts_with("/run/user/") || mount.point.starts_with("/run/credentials/")) continue;
        keys[{"Mounts"}][mount.point] = mount.type + " " + mount.source;
    }
    addDevices(files, sys + "/bus/pci/devices", "PCI", std::array{"class", "vendor", "device", "revision"},
               keys);
    addDevices(files, sys + "/bus/usb/devices", "USB",
               std::array{"idVendor", "idProduct", "manufacturer", "product", "serial"}, keys);
    addDevices(files, sys + "/class/dmi", "Firmware",
               std::array{"sys_vendor", "product_name", "product_serial", "board_name", "bios_vendor",
                          "bios_version"},
               keys);
    return keys;
}

}  // namespace corvalence::platform::linux_system
