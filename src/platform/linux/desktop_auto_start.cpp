#include "platform/linux/desktop_auto_start.h"

#include "platform/file_copy.h"

namespace corvalence::platform::linux_system {

namespace {

/// A command in double quotes, with a backslash before what means something within them. The value of a key
/// is read once more before, which takes every backslash double; a percent sign would begin a field.
std::string quoted(const std::string& program) {
    std::string text = "\"";
    for (const char c : program) {
        if (c == '\\') {
            text += "\\\\\\\\";
            continue;
        }
        if (c == '"' || c == '`' || c == '$') text += "\\\\";
        if (c == '%') text += "%";
        text.push_back(c);
    }
    return text + "\"";
}

}  // namespace

bool DesktopAutoStart::enable(const std::string& program) {
    if (program.find_first_of("\r\n") != std::string::npos) return false;
    const std::string beside = path_ + ".new";
    try {
        files_.createFolder(folder_);
        removeQuietly(files_, beside);
        auto file = files_.createNew(beside);
        file->write(base::bytesOf("[Desktop Entry]\nType=Application\nName=Corvalence\nExec=" +
                                  quoted(program) + " /Background\n"));
        file->flush();
        file.reset();
        files_.rename(beside, path_);
        return true;
    } catch (const base::FileFailure&) {
        removeQuietly(files_, beside);
        return false;
    }
}

bool DesktopAutoStart::disable() {
    try {
        if (isEnabled()) files_.remove(path_);
        return true;
    } catch (const base::FileFailure&) {
        return false;
    }
}

bool DesktopAutoStart::isEnabled() {
    return files_.status(path_, Follow::Yes).has_value();
}

}  // namespace corvalence::platform::linux_system
