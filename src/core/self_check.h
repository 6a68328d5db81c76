#pragma once

#include <span>
#include <string>
#include <string_view>

#include "crypto/md5.h"
#include "platform/platform.h"

namespace corvalence::core {

/// What a self-check looks at, by full paths.
struct SelfCheckFiles {
    std::string program;
    std::string digest;  // 16 bytes, the MD5 of the program as it was built
    std::string help;

    /// Of a program whose digest and help lie beside it.
    static SelfCheckFiles beside(const std::string& program, std::string_view digestName,
                                 const base::PathRules& paths);
};

/// Names beside the programs; the build writes the first two.
inline constexpr std::string_view kProgramDigest = "App SC";
inline constexpr std::string_view kConsoleDigest = "App SC corvalencectl";
inline constexpr std::string_view kHelpFile = "Corvalence.help";

enum class SelfCheckResult {
    Same,
    Changed,     // or the file with the digest is shorter than one
    NoDigest,    // the file with the digest is not there, or cannot be read
    Unreadable,  // the checked file itself
    Cancelled
};

/// Compares the digests of a program's own files with those of the build, under a progress window each. Stops
/// nothing and changes nothing; whoever calls it warns.
class SelfCheck {
  public:
    SelfCheck(platform::Platform& platform, SelfCheckFiles files)
        : platform_(platform), files_(std::move(files)) {}

    SelfCheckResult checkProgram() const;
    SelfCheckResult checkHelp(const crypto::Md5::Digest& built) const;

  private:
    SelfCheckResult compare(const std::string& file, std::string_view title, const std::string& built) const;

    platform::Platform& platform_;
    SelfCheckFiles files_;
};

/// The dialog about a result: heading, and lines in their order.
struct SelfCheckWarning {
    std::string_view title;
    std::string_view heading;
    std::span<const std::string_view> lines;
};

/// Null where there is nothing to warn of.
const SelfCheckWarning* programWarning(SelfCheckResult result) noexcept;
const SelfCheckWarning* helpWarning(SelfCheckResult result) noexcept;

}  // namespace corvalence::core
