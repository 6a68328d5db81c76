#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "crypto/session.h"
#include "platform/file_system.h"
#include "platform/user_interface.h"
#include "schedule/log_lines.h"

namespace corvalence::schedule {

/// What a line of a log is shown with, by the number of its icon.
enum class LogIcon {
    Plain = 0,
    Detail = 1,
    Changed = 2,
    NormalLight = 3,  // any other line, on the light colour scheme
    NormalDark = 4,
    Database = 5,
    Added = 6,
    Removed = 7,
    Recycled = 8,
};

struct LogRow {
    std::string text;
    LogIcon icon = LogIcon::NormalLight;
    bool isTruncated = false;
};

/// Tells the icons of lines that come one after the other: some depend on the line before.
class LogClassifier {
  public:
    explicit LogClassifier(bool isDark = false)
        : normal_(isDark ? LogIcon::NormalDark : LogIcon::NormalLight) {}
    LogIcon classify(std::string_view line);

  private:
    LogIcon normal_;
    std::string previous_;  // the beginning of the line before
};

/// The line as it is shown: what cannot be printed is a blank, but for lines about streams. UTF-8 is printed.
std::string printable(std::string_view line);

/// A log as the viewer shows it. It is read as rows are asked for, so that a log of any size takes the memory
/// of a page.
class LogView {
  public:
    static constexpr std::size_t kLongestShown = 10240;  // bytes of a line, unless all are wanted

    struct Manner {
        bool truncates = true;
        bool isDark = false;
    };

    /// Goes through the whole log once. A missing one is empty. Throws base::FileFailure. `progress`, where
    /// given, may cancel: what was read so far is then all there is.
    LogView(platform::FileSystem& files, const std::string& path, const crypto::SessionKey& key,
            const crypto::ChainValue& chain, Manner manner, platform::Progress* progress = nullptr);

    /// Whether the log is empty or a line begins with "Database". Otherwise it is damaged, no log, or sealed
    /// with another password.
    bool isValid() const noexcept { return isValid_; }
    std::size_t rows() const noexcept { return rows_; }
    std::size_t truncated() const noexcept { return truncated_; }

    /// Hands on rows from number `first` on, at most `count`, until the sink answers false.
    void read(std::size_t first, std::size_t count, const std::function<bool(const LogRow&)>& sink) const;

  private:
    /// Where every so manieth row begins, and the line in front of it.
    static constexpr std::size_t kStride = 1000;
    struct Mark {
        std::uint64_t offset;
        std::uint64_t before;
    };

    const crypto::SessionKey& key_;
    crypto::ChainValue chain_;
    Manner manner_;
    std::unique_ptr<platform::File> file_;  // nothing where there is no log
    std::vector<Mark> marks_;
    std::size_t rows_ = 0;
    std::size_t truncated_ = 0;
    bool isValid_ = true;
};

// What the viewer asks.
inline constexpr std::string_view kAlternativePasswordQuestion =
    "This does not appear to be a valid Corvalence log file.\n\nThe log file may have been corrupted in "
    "transit, or it may have been encrypted with a different password.\n\nWould you like to try an "
    "alternative password?";
inline constexpr std::string_view kFullValuesQuestion =
    "This log file contains very large values.\nValues have been truncated to 10KB to make the log file "
    "manageable.\nWould you like to view the full values?\nIf you press yes the log file could take a long "
    "time to load.";

}  // namespace corvalence::schedule
