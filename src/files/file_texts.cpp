#include "files/file_texts.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/utf8.h"

namespace corvalence::files {

namespace {

struct AttributeRow {
    AttributeCode code;
    std::string_view text;
};

constexpr AttributeRow kAttributeTexts[] = {
    {1, "Read only."},
    {2, "Hidden."},
    {3, "Read only, Hidden."},
    {4, "System."},
    {5, "System, Read only."},
    {6, "System, Hidden."},
    {7, "System, Hidden, Read only."},
    {32, "Archive."},
    {33, "Read only, Archive."},
    {34, "Archive, Hidden."},
    {35, "Archive, Hidden, Read only."},
    {36, "System, Archive."},
    {37, "System, Read only, Archive."},
    {38, "System, Hidden, Archive."},
    {39, "System, Read only, Archive, Hidden."},
    {100, "Compressed"},
    {101, "Compressed, Read only."},
    {102, "Compressed, Hidden."},
    {103, "Compressed, Read only, Hidden."},
    {104, "Compressed, Archive."},
    {105, "Compressed, Read only, Archive."},
    {106, "Compressed, Archive, Hidden."},
    {107, "Compressed, Archive, Hidden, Read only."},
    {108, "Encrypted"},
    {109, "Encrypted, Read only."},
    {110, "Encrypted, Hidden."},
    {111, "Encrypted, Read only, Hidden."},
    {112, "Encrypted, Archive."},
    {113, "Encrypted, Read only, Archive."},
    {114, "Encrypted, Archive, Hidden."},
    {115, "Encrypted, Archive, Hidden, Read only."},
};

struct UnitRow {
    std::uint64_t above;
    std::uint64_t below;
    std::string_view name;
};

constexpr UnitRow kUnits[] = {
    {std::uint64_t{1} << 10, std::uint64_t{1} << 20, "KB"},
    {std::uint64_t{1} << 20, std::uint64_t{1} << 30, "MB"},
    {std::uint64_t{1} << 30, UINT64_MAX, "GB"},
};

std::string bracket(std::uint64_t bytes) {
    for (const UnitRow& unit : kUnits) {
        if (bytes > unit.above && bytes < unit.below) {
            return " [" + base::twoDecimals(bytes, unit.above) + " " + std::string(unit.name) + "]";
        }
    }
    return {};
}

/// Bytes of the first `count` characters; a byte that begins no character counts as one.
std::size_t leadingBytes(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count)
        at += std::max<std::size_t>(base::utf8Length(text.substr(at)), 1);
    return at;
}

}  // namespace

std::string_view attributeText(AttributeCode code) noexcept {
    for (const AttributeRow& row : kAttributeTexts) {
        if (row.code == code) return row.text;
    }
    return {};
}

std::string attributeLetters(AttributeCode code) {
    std::string letters;
    // Each begins with its own capital; the second word of "Read only" has none.
    for (const char c : attributeText(code)) {
        if (c >= 'A' && c <= 'Z') letters.append(letters.empty() ? "" : "+").push_back(c);
    }
    // The words of a few combinations have them the other way round.
    if (const std::size_t at = letters.find("R+H"); at != std::string::npos) letters.replace(at, 3, "H+R");
    return letters;
}

std::string formatSizeText(std::uint64_t bytes) {
    const std::string unit = bracket(bytes);
    return std::to_string(bytes) + " Bytes. " + unit + (unit.empty() ? "" : ".");
}

std::string remainingText(std::uint64_t bytes) {
    if (bytes == 0) return "0 bytes.";
    return std::to_string(bytes) + " Bytes." + bracket(bytes);
}

std::string foundSizeText(std::uint64_t bytes) {
    return std::to_string(bytes) + " Bytes" + bracket(bytes);
}

std::string describeFileType(std::string_view path, const base::PathRules& paths,
                             platform::FileTypes& types) {
    const std::string_view name = paths.fileName(path);
    const std::size_t stop = name.rfind('.');
    if (stop == std::string_view::npos || stop == 0) return "No file extension.";
    std::string extension(name.substr(stop + 1));
    std::string text = types.typeText(extension).value_or("");
    if (text.empty()) {
        const std::size_t capitals = std::min<std::size_t>(extension.size(), 4);
        for (std::size_t i = 0; i < capitals; ++i) {
            if (extension[i] >= 'a' && extension[i] <= 'z')
                extension[i] = static_cast<char>(extension[i] - 'a' + 'A');
        }
        text = extension + " File";
    }
    std::replace(text.begin(), text.end(), '.', ' ');
    return text;
}

std::array<std::string, 3> pathLines(std::string_view path) {
    constexpr std::size_t kWidth = 92;
    std::array<std::string, 3> lines;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t end = i + 1 < lines.size() ? leadingBytes(path, kWidth) : path.size();
        lines[i] = path.substr(0, end);
        path.remove_prefix(end);
    }
    return lines;
}

std::string shortPath(std::string_view path) {
    constexpr std::size_t kLongest = 120;
    constexpr std::size_t kTail = 113;
    if (path.size() <= kLongest) return std::string(path);
    return std::string(path.substr(0, 3)) + "~..." + std::string(path.substr(path.size() - kTail));
}

}  // namespace corvalence::files
