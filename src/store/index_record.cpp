#include "store/index_record.h"

#include "base/hex_text.h"
#include "base/number_text.h"
#include "base/record_text.h"

namespace corvalence::store {

namespace {

constexpr std::size_t kDigestWidth = 32;

bool scanKind(std::string_view field, IndexRecord& record) {
    if (field.size() == 1 && std::string_view("DPRS").find(field.front()) != std::string_view::npos) {
        record.kind = static_cast<DatabaseKind>(field.front());
        return true;
    }
    const auto number = base::scanInteger(field);
    if (!number || *number < 0) return false;
    record.kind = DatabaseKind::Numbered;
    record.number = *number;
    return true;
}

}  // namespace

std::string IndexRecord::render() const {
    std::string line = path;
    if (kind == DatabaseKind::Numbered) {
        line.push_back('*');
        line.push_back(static_cast<char>(digest));
    }
    line.push_back(base::kSeparator);
    base::appendField(line, kind == DatabaseKind::Numbered ? std::to_string(number)
                                                           : std::string(1, static_cast<char>(kind)));
    base::appendTime(line, created);
    base::appendField(line, fileDigest);
    if (lastCheck) base::appendTime(line, *lastCheck);
    line.push_back('\n');
    return line;
}

std::optional<IndexRecord> IndexRecord::parse(std::string_view line) {
    const auto fields = base::splitFields(base::withoutLineEnd(line));
    if (fields.size() < 5) return std::nullopt;
    IndexRecord record;
    if (!scanKind(fields[1], record)) return std::nullopt;
    std::string_view path = fields[0];
    if (record.kind == DatabaseKind::Numbered) {
        if (path.size() < 3 || path[path.size() - 2] != '*') return std::nullopt;
        const auto code = crypto::digestCodeOf(path.back());
        if (!code) return std::nullopt;
        record.digest = *code;
        path.remove_suffix(2);
    }
    if (path.empty()) return std::nullopt;
    record.path = path;
    const auto created = base::scanTime(fields[2], fields[3]);
    if (!created) return std::nullopt;
    record.created = *created;
    if (fields[4].size() != kDigestWidth || !base::isHexText(fields[4])) return std::nullopt;
    record.fileDigest = fields[4];
    if (fields.size() >= 7) record.lastCheck = base::scanTime(fields[5], fields[6]);
    return record;
}

bool provesPassword(std::string_view line) {
    std::size_t ends[5] = {};
    std::size_t from = 0;
    for (std::size_t& end : ends) {
        end = line.find(base::kSeparator, from);
        if (end == std::string_view::npos) return false;
        from = end + 1;
    }
    if (ends[0] < 1 || ends[1] < 1) return false;
    const std::string_view digest = line.substr(ends[3] + 1, ends[4] - ends[3] - 1);
    return digest.size() == kDigestWidth && base::isHexText(digest);
}

}  // namespace corvalence::store
