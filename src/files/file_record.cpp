#include "files/file_record.h"

#include "base/hex_text.h"
#include "base/number_text.h"
#include "base/record_text.h"

namespace corvalence::files {

namespace {

constexpr std::uint32_t kNotContentIndexed = 0x2000;
constexpr std::uint32_t kReadOnlyHiddenArchive = 0x23;
constexpr AttributeCode kFirstCompressed = 100;
constexpr AttributeCode kFirstEncrypted = 108;
constexpr std::size_t kSizeWidth = 12;  // of "%14.1lf" when ".0" is cut off

}  // namespace

AttributeCode attributeCode(std::uint32_t attributes) noexcept {
    if (attributes == 0) return 8;
    if (attributes <= 256) return static_cast<AttributeCode>(attributes);
    const std::uint32_t word = attributes & ~kNotContentIndexed;
    const std::uint32_t flags = word & kReadOnlyHiddenArchive;
    // Codes run through read only, hidden and then archive: 0x20 is the third of three bits.
    const auto step = static_cast<AttributeCode>((flags & 3U) + (flags >> 5) * 4);
    if (word == (platform::attribute::kCompressed | flags))
        return static_cast<AttributeCode>(kFirstCompressed + step);
    if (word == (platform::attribute::kEncrypted | flags))
        return static_cast<AttributeCode>(kFirstEncrypted + step);
    return static_cast<AttributeCode>(attributes & 0xFF);
}

FileRecord FileRecord::of(std::string path, std::string digest, const platform::FileStatus& status) {
    FileRecord record;
    record.path = std::move(path);
    record.digest = std::move(digest);
    record.size = static_cast<std::uint32_t>(status.size);
    record.attributes = attributeCode(status.attributes);
    record.written = status.written;
    record.created = status.created;
    return record;
}

std::string FileRecord::render() const {
    std::string line;
    line.reserve(path.size() + digest.size() + 80);
    base::appendField(line, path);
    base::appendField(line, digest);
    base::appendField(line, base::rightAligned(size, kSizeWidth));
    const char code = static_cast<char>(attributes);
    base::appendField(line, std::string_view(&code, 1));
    for (const base::FileTime time : {written, created})
        base::appendTime(line, time);
    return line + "\r\n";
}

std::optional<FileRecord> FileRecord::parse(std::string_view line, std::size_t width) {
    const auto fields = base::splitFields(base::withoutLineEnd(line));
    if (fields.size() != 8 || fields[0].empty() || fields[1].size() != width || fields[3].size() != 1 ||
        !base::isHexText(fields[1])) {
        return std::nullopt;
    }
    const auto size = base::scanWholeUnits(fields[2]);
    const auto written = base::scanTime(fields[4], fields[5]);
    const auto created = base::scanTime(fields[6], fields[7]);
    if (!size || *size > UINT32_MAX || !written || !created) return std::nullopt;
    FileRecord record;
    record.path = fields[0];
    record.digest = fields[1];
    record.size = static_cast<std::uint32_t>(*size);
    record.attributes = static_cast<AttributeCode>(fields[3].front());
    record.written = *written;
    record.created = *created;
    return record;
}

std::string_view pathOfLine(std::string_view line) noexcept {
    return line.substr(0, line.find(base::kSeparator));
}

}  // namespace corvalence::files
