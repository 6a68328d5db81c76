#include "core/self_check.h"

#include <array>
#include <optional>

#include "base/hex_text.h"
#include "files/file_digest.h"

namespace corvalence::core {

namespace {

constexpr std::string_view kProgramTitle = "Application file integrity check.";

constexpr std::array<std::string_view, 3> kNoDigestLines = {
    "It is recommended that you re-install Corvalence.",
    "If you still experience this problem contact Halvern Works :", "support@halvernworks.example"};
constexpr SelfCheckWarning kNoDigestWarning = {
    kProgramTitle,
    "THE FILE USED TO VERIFY THE INTEGRITY OF CORVALENCE\n"
    "                                                           CANNOT BE FOUND !",
    kNoDigestLines};

constexpr std::array<std::string_view, 11> kChangedLines = {
    "It is highly recommended that you follow these instructions :",
    "1. Click OK.",
    "2. Create a database [ or open an existing database ].",
    "3. Add the file Corvalence.exe that is located in the folder where you installed Corvalence, to a "
    "database.",
    "4. Make a note of the MD5 digest value of Corvalence.exe",
    "5. Close Corvalence.",
    "6. Visit www.halvernworks.example",
    "and make a note of the MD5 value of Corvalence.exe that is provided on the download page.",
    "7. Compare the MD5 values.",
    "If the two MD5 values match then the file that is used to verify the integrity of Corvalence has been "
    "modified or become corrupted. In which case it is recommended that you re-install Corvalence.",
    "If the two MD5 values do not match, your copy of Corvalence has been modified. It is recommeded that "
    "you "
    "re-install Corvalence.  If you continue to use a modified version it is entirely at your own risk!"};
constexpr SelfCheckWarning kChangedWarning = {
    kProgramTitle,
    "EITHER THE APPLICATION FILE [ CORVALENCE.EXE ] OR THE FILE USED TO VERIFY THE"
    "                                                  INTEGRITY OF CORVALENCE HAS BEEN CHANGED !",
    kChangedLines};

constexpr std::array<std::string_view, 1> kHelpLines = {
    "Whilst this will not affect the normal operation of Corvalence, the help file should not be modified."};
constexpr SelfCheckWarning kHelpWarning = {"Help file integrity check.",
                                           "THE CORVALENCE HELP FILE HAS BEEN MODIFIED !", kHelpLines};

/// The digest that a file begins with, as hexadecimal text; shorter where the file is. Nothing where it
/// cannot be read.
std::optional<std::string> readDigest(platform::FileSystem& files, const std::string& path) {
    try {
        crypto::Md5::Digest digest{};
        const std::size_t size = files.openShared(path)->read(digest);
        return base::hexText(base::ByteView(digest).first(size));
    } catch (const base::FileFailure&) {
        return std::nullopt;
    }
}

}  // namespace

SelfCheckFiles SelfCheckFiles::beside(const std::string& program, std::string_view digestName,
                                      const base::PathRules& paths) {
    const std::string folder(paths.folder(program));
    return {program, folder + std::string(digestName), folder + std::string(kHelpFile)};
}

SelfCheckResult SelfCheck::checkProgram() const {
    const auto built = readDigest(platform_.files, files_.digest);
    if (!built) return SelfCheckResult::NoDigest;
    return compare(files_.program, "Checking Application File Integrity...", *built);
}

SelfCheckResult SelfCheck::checkHelp(const crypto::Md5::Digest& built) const {
    return compare(files_.help, "Checking Help File Integrity...", base::hexText(built));
}

SelfCheckResult SelfCheck::compare(const std::string& file, std::string_view title,
                                   const std::string& built) const {
    try {
        const auto open = platform_.files.openShared(file);
        const auto window = platform_.ui.openProgress(std::string(title));
        files::ByteProgress progress(*window, open->size());
        const auto digested = files::FileDigester(crypto::DigestCode::Md5).digest(*open, progress);
        if (!digested) return SelfCheckResult::Cancelled;
        return digested->digest == built ? SelfCheckResult::Same : SelfCheckResult::Changed;
    } catch (const base::FileFailure&) {
        return SelfCheckResult::Unreadable;
    }
}

const SelfCheckWarning* programWarning(SelfCheckResult result) noexcept {
    switch (result) {
        case SelfCheckResult::NoDigest:
            return &kNoDigestWarning;
        case SelfCheckResult::Changed:
        case SelfCheckResult::Unreadable:
            return &kChangedWarning;
        case SelfCheckResult::Same:
        case SelfCheckResult::Cancelled:
            break;
    }
    return nullptr;
}

const SelfCheckWarning* helpWarning(SelfCheckResult result) noexcept {
    const bool isFine = result == SelfCheckResult::Same || result == SelfCheckResult::Cancelled;
    return isFine ? nullptr : &kHelpWarning;
}

}  // namespace corvalence::core
