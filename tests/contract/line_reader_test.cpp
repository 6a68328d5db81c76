#include "platform/line_reader.h"

#include <gtest/gtest.h>

#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using Lines = std::vector<std::string>;

/// All lines of a file of this content, which end where the reader says.
Lines linesOf(const std::string& content, std::size_t limit) {
    const TempFolder folder;
    const auto file = SystemBackEnd().files.openShared(folder.write("lines", content));
    platform::LineReader reader(*file, limit);
    Lines lines;
    std::uint64_t total = 0;
    for (std::string_view line; reader.next(line);) {
        lines.emplace_back(line);
        total += line.size();
        EXPECT_EQ(reader.offset(), total);
    }
    return lines;
}

TEST(LineReading, keepsLineEndsZerosAndALastPieceWithoutEnd) {
    EXPECT_EQ(linesOf("", 600), Lines{});
    EXPECT_EQ(linesOf("a\r\nb\n\nc", 600), (Lines{"a\r\n", "b\n", "\n", "c"}));
    EXPECT_EQ(linesOf(std::string("x\0y\n\xFF\n", 6), 600), (Lines{std::string("x\0y\n", 4), "\xFF\n"}));
    EXPECT_EQ(linesOf("12345\n", 6), Lines{"12345\n"});
    EXPECT_EQ(linesOf("1234567890123\n", 6), (Lines{"123456", "789012", "3\n"}));
}

TEST(LineReading, losesNothingWhereBlocksMeet) {
    std::string content;
    Lines expected;
    for (std::size_t i = 0; content.size() < 1'000'000; ++i)
        content += expected.emplace_back(std::string(i % 599, static_cast<char>('a' + i % 26)) + "\n");
    EXPECT_EQ(linesOf(content, 600), expected);
}

}  // namespace
}  // namespace corvalence::test
