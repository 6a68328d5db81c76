#include "files/file_record.h"

#include <gtest/gtest.h>

#include "base/record_text.h"
#include "files/file_texts.h"
#include "world.h"

namespace corvalence::test {
namespace {

using namespace files;

FileRecord sample() {
    FileRecord record;
    record.path = "/etc/passwd";
    record.digest = "d41d8cd98f00b204e9800998ecf8427e";
    record.size = 4294967295U;
    record.attributes = 33;
    record.written = base::FileTime::fromHalves(30000000, -5);
    record.created = base::FileTime::fromHalves(0, 7);
    return record;
}

TEST(FileRecord, IsTheLineOfTheFormatByteForByte) {
    const std::string line =
        "/etc/passwd\x7F"
        "d41d8cd98f00b204e9800998ecf8427e\x7F"
        "  4294967295\x7F!\x7F"
        "30000000\x7F-5\x7F"
        "0\x7F"
        "7\x7F\r\n";
    EXPECT_EQ(sample().render(), line);
    const auto parsed = FileRecord::parse(line, 32);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->render(), line);
}

TEST(FileRecord, KeepsEveryAttributeByteZeroIncluded) {
    for (int code = 0; code < 256; ++code) {
        if (code == 0x7F || code == '\n') continue;  // separators of the text itself
        FileRecord record = sample();
        record.attributes = static_cast<AttributeCode>(code);
        const auto parsed = FileRecord::parse(record.render(), 32);
        ASSERT_TRUE(parsed.has_value()) << code;
        EXPECT_EQ(parsed->attributes, code);
    }
}

TEST(FileRecord, FitsAReadersLimitAtItsLongest) {
    FileRecord record = sample();
    record.path = std::string(base::kPathLimit, 'p');
    record.digest = std::string(128, 'a');
    record.written = record.created = base::FileTime::fromHalves(INT32_MIN, INT32_MIN);
    EXPECT_LE(record.render().size(), base::kLineLimit);
    EXPECT_TRUE(FileRecord::parse(record.render(), 128).has_value());
}

TEST(FileRecord, RefusesWhatIsNoRecord) {
    const std::string good = sample().render();
    EXPECT_FALSE(FileRecord::parse(good, 40));
    for (std::size_t length = 0; length + 3 < good.size(); ++length) {
        EXPECT_FALSE(FileRecord::parse(good.substr(0, length), 32)) << length;
    }
    EXPECT_FALSE(FileRecord::parse("\x7F" + good, 32));
    std::string bad = good;
    bad[bad.find("d41")] = 'g';
    EXPECT_FALSE(FileRecord::parse(bad, 32));
}

struct AttributeCase {
    std::uint32_t word;
    int code;
    const char* text;
};

class AttributeWord : public testing::TestWithParam<AttributeCase> {};

TEST_P(AttributeWord, BecomesItsCodeAndText) {
    EXPECT_EQ(attributeCode(GetParam().word), GetParam().code);
    EXPECT_EQ(attributeText(attributeCode(GetParam().word)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    FileRecord, AttributeWord,
    testing::Values(AttributeCase{0, 8, ""}, AttributeCase{0x20, 32, "Archive."},
                    AttributeCase{0x21, 33, "Read only, Archive."},
                    AttributeCase{0x22, 34, "Archive, Hidden."}, AttributeCase{0x80, 128, ""},
                    AttributeCase{0x100, 0, ""}, AttributeCase{0x800, 100, "Compressed"},
                    AttributeCase{0x2803, 103, "Compressed, Read only, Hidden."},
                    AttributeCase{0x820, 104, "Compressed, Archive."},
                    AttributeCase{0x2823, 107, "Compressed, Archive, Hidden, Read only."},
                    AttributeCase{0x6000, 108, "Encrypted"},
                    AttributeCase{0x4021, 113, "Encrypted, Read only, Archive."},
                    AttributeCase{0x4022, 114, "Encrypted, Archive, Hidden."}, AttributeCase{0x2000, 0, ""},
                    AttributeCase{0x4820, 32, "Archive."}, AttributeCase{0x804, 4, "System."}));

TEST(FileTexts, SayASizeWithItsBracketStrictlyBetweenTheUnits) {
    EXPECT_EQ(formatSizeText(0), "0 Bytes. ");
    EXPECT_EQ(formatSizeText(1024), "1024 Bytes. ");
    EXPECT_EQ(formatSizeText(1025), "1025 Bytes.  [1.00 KB].");
    EXPECT_EQ(formatSizeText(1048576), "1048576 Bytes. ");
    EXPECT_EQ(formatSizeText(1600000), "1600000 Bytes.  [1.53 MB].");
    EXPECT_EQ(formatSizeText(5'000'000'000), "5000000000 Bytes.  [4.66 GB].");
    EXPECT_EQ(remainingText(0), "0 bytes.");
    EXPECT_EQ(remainingText(2048), "2048 Bytes. [2.00 KB]");
}

TEST(FileTexts, ShortenPathsAtTheirLimits) {
    const std::string just(120, 'a');
    EXPECT_EQ(shortPath(just), just);
    const std::string longer = "xyz" + std::string(118, 'b');
    EXPECT_EQ(shortPath(longer), "xyz~..." + std::string(113, 'b'));
    const auto lines = pathLines(std::string(92, 'a') + std::string(92, 'b') + std::string(76, 'c'));
    EXPECT_EQ(lines[0], std::string(92, 'a'));
    EXPECT_EQ(lines[1], std::string(92, 'b'));
    EXPECT_EQ(lines[2], std::string(76, 'c'));
    // A character that was cut in two was shown as its bytes.
    const std::string letters(91, 'a');
    EXPECT_EQ(pathLines(letters + "\xC3\xA4\xFFz")[0], letters + "\xC3\xA4");
}

class NoTypes : public platform::FileTypes {
  public:
    std::optional<std::string> typeText(std::string_view extension) override {
        if (extension == "odf") return "Open.Document";
        return std::nullopt;
    }
};

TEST(FileTexts, DescribeATypeByTheNameAlone) {
    NoTypes types;
    const base::PathRules paths;
    EXPECT_EQ(describeFileType("/a/b.txt", paths, types), "TXT File");
    EXPECT_EQ(describeFileType("/a/b.config", paths, types), "CONFig File");
    EXPECT_EQ(describeFileType("/a.d/b", paths, types), "No file extension.");
    EXPECT_EQ(describeFileType("/a/.profile", paths, types), "No file extension.");
    EXPECT_EQ(describeFileType("/a/b.odf", paths, types), "Open Document");
}

}  // namespace
}  // namespace corvalence::test
