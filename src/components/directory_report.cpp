#include "components/directory_report.h"

#include <algorithm>

#include "base/record_text.h"

namespace corvalence::components {

namespace {

struct Record {
    std::string_view path;
    const DirectoryCode& code;
};

std::optional<Record> parse(std::string_view line) {
    const auto fields = base::splitFields(line);
    if (fields.size() != 2 || fields[0].empty()) return std::nullopt;
    const auto code = std::find_if(kDirectoryCodes.begin(), kDirectoryCodes.end(),
                                   [&](const DirectoryCode& row) { return row.code == fields[1]; });
    if (code == kDirectoryCodes.end()) return std::nullopt;
    return Record{fields[0], *code};
}

}  // namespace

std::optional<std::vector<std::string>> DirectoryRenderer::columns(std::string_view line) const {
    const auto record = parse(line);
    if (!record) return std::nullopt;
    return std::vector{std::string(paths_.fileName(record->path)), std::string(paths_.folder(record->path)),
                       std::string(record->code.status)};
}

std::vector<reports::ReportField> DirectoryRenderer::fields(std::size_t, std::string_view line) const {
    const auto record = parse(line);
    if (!record) return {};
    return {{"code", std::string(record->code.code)}, {"path", std::string(record->path), true}};
}

std::string DirectoryRenderer::text(std::size_t, std::string_view line) const {
    const auto record = parse(line);
    return record ? std::string(record->code.prefix).append(record->path) : std::string();
}

}  // namespace corvalence::components
