#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/page_buffer.h"
#include "platform/file_system.h"
#include "platform/user_interface.h"

namespace corvalence::files {

/// Searches files for any of several texts, in large blocks; what lies across two blocks is found as well.
class TextSearch {
  public:
    struct Rules {
        bool matchCase = false;  // else A to Z and a to z compare equal
        bool wholeWord = false;  // a blank, or the file's end, on each side of the text
        bool textOnly = false;   // a byte below 32 or above 126 in front of a hit ends the search
    };
    enum class Result { Found, NotFound, Cancelled };

    TextSearch(std::vector<std::string> texts, const Rules& rules);

    /// Reads from the file's position until a text is found or the file ends; asks for Cancel before every
    /// block. An empty text is found in every file. Throws base::FileFailure.
    Result search(platform::File& file, platform::Progress& progress);

  private:
    struct Text {
        std::string bytes;      // folded where case does not matter, with its blanks
        std::size_t pivot = 0;  // offset of the byte that is looked for first
    };
    /// Texts that are looked for by the same byte.
    struct Group {
        std::uint8_t pivot = 0;
        std::uint8_t capital = 0;  // the pivot itself where it has none
        std::vector<Text> texts;
    };

    void put(Text text, char pivot);
    bool isAt(const Text& text, const std::uint8_t* place) const noexcept;
    bool findIn(const Group& group, base::ByteView bytes, std::size_t end) const noexcept;

    Rules rules_;
    std::vector<Group> groups_;
    std::size_t longest_;
    base::PageBuffer buffer_;
};

}  // namespace corvalence::files
