#include "core/folder_icons.h"

#include <optional>
#include <vector>

#include "core/installation.h"
#include "platform/file_copy.h"

namespace corvalence::core {

namespace {

/// The longest content that is looked at, far beyond what the program writes.
constexpr std::size_t kContentLimit = 65536;

/// Nothing where no file stands there.
std::optional<std::string> contentOf(platform::FileSystem& files, const std::string& path) {
    if (!files.status(path, platform::Follow::No)) return std::nullopt;
    std::string content(kContentLimit, '\0');
    const base::ByteSpan bytes(reinterpret_cast<std::uint8_t*>(content.data()), content.size());
    content.resize(files.openShared(path)->read(bytes));
    return content;
}

void write(platform::FileSystem& files, const std::string& path, const std::string& text) {
    const std::string beside = path + ".new";
    platform::removeQuietly(files, beside);
    try {
        const auto file = files.createNew(beside);
        file->write(base::bytesOf(text));
        file->flush();
        files.rename(beside, path);
    } catch (const base::FileFailure&) {
        platform::removeQuietly(files, beside);
        throw;
    }
}

void applyTo(platform::FileSystem& files, const std::string& path, const FolderIconFile& icon, bool isOn) {
    const auto content = contentOf(files, path);
    if (content && !icon.isLike(*content)) return;
    if (isOn && content != icon.text()) write(files, path, icon.text());
    if (!isOn && content) files.remove(path);
}

}  // namespace

bool FolderIconFile::isLike(std::string_view content) const {
    if (!content.starts_with(opening)) return false;
    content.remove_prefix(opening.size());
    if (!content.ends_with(closing)) return false;
    content.remove_suffix(closing.size());
    return place.empty() ? content.empty() : content.find('\n') == std::string_view::npos;
}

FolderIconFile windowsFolderIcon(const std::string& program) {
    return {"desktop.ini", "[.ShellClassInfo]\r\nConfirmFileOp=0\r\nNoSharing=1\r\nIconFile=", program,
            "\r\nIconIndex=1"};
}

FolderIconFile desktopFolderIcon() {
    return {".directory", "[Desktop Entry]\nType=Directory\nIcon=corvalence\n"};
}

void applyFolderIcons(platform::Platform& platform, const settings::Configuration& configuration,
                      const FolderIconFile& icon) {
    const bool isOn = configuration.isOn(settings::key::kFolderIcon);
    const std::string root = configuration.folder(settings::key::kInstallDirectory);
    std::vector<std::string> folders = {root};
    for (const std::string_view name : kDataFolders)
        folders.push_back(platform.paths.withSeparator(root + std::string(name)));
    for (const std::string& folder : folders) {
        try {
            applyTo(platform.files, folder + icon.name, icon, isOn);
        } catch (const base::FileFailure&) {
            // The next folder may take its icon all the same.
        }
    }
}

}  // namespace corvalence::core
