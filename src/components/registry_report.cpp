#include "components/registry_report.h"

#include <algorithm>

#include "base/record_text.h"

namespace corvalence::components {

namespace {

struct Record {
    const RegistryChangeRow& row;
    std::string_view name;
    std::string_view type;
    std::string_view data;
    std::string_view newType;  // of a changed one
    std::string_view newData;

    bool isChange() const noexcept { return row.code == registryChange(RegistryChange::Changed).code; }
};

std::optional<Record> parse(std::string_view line) {
    constexpr std::size_t kCode = 3;
    constexpr std::size_t kChangeFields = 6;
    const auto fields = base::splitFields(line);
    if (fields.size() <= kCode) return std::nullopt;
    const auto row = std::find_if(kRegistryChanges.begin(), kRegistryChanges.end(),
                                  [&](const RegistryChangeRow& each) { return each.code == fields[kCode]; });
    if (row == kRegistryChanges.end()) return std::nullopt;
    Record record{*row, fields[0], fields[1], fields[2], {}, {}};
    if (fields.size() != (record.isChange() ? kChangeFields : kCode + 1)) return std::nullopt;
    if (record.isChange()) {
        record.newType = fields[4];
        record.newData = fields[5];
    }
    return record;
}

std::string labelled(std::string_view label, std::string_view text) {
    return "\n" + std::string(label) + std::string(text);
}

}  // namespace

std::optional<std::vector<std::string>> RegistryRenderer::columns(std::string_view line) const {
    const auto record = parse(line);
    if (!record) return std::nullopt;
    const std::size_t at = std::min(record->name.rfind('\\'), record->name.size());
    return std::vector{std::string(record->name.substr(0, at)),
                       std::string(record->name.substr(std::min(at + 1, record->name.size()))),
                       std::string(record->row.status),
                       std::string(record->isChange() ? record->newType : record->type),
                       std::string(record->data),
                       std::string(record->newData)};
}

std::vector<reports::ReportField> RegistryRenderer::fields(std::size_t, std::string_view line) const {
    const auto record = parse(line);
    if (!record) return {};
    std::vector<reports::ReportField> fields = {{"code", std::string(record->row.code)},
                                                {"key", std::string(record->name)},
                                                {"type", std::string(record->type)},
                                                {"value", std::string(record->data)}};
    if (record->isChange()) {
        fields.push_back({"new_type", std::string(record->newType)});
        fields.push_back({"new_value", std::string(record->newData)});
    }
    return fields;
}

std::string RegistryRenderer::text(std::size_t, std::string_view line) const {
    const auto record = parse(line);
    if (!record) return {};
    std::string text = std::string(record->row.heading) + labelled("Key:  ", record->name);
    if (record->isChange()) {
        text += labelled("Old Type:  ", record->type) + labelled("New Type:  ", record->newType) +
                labelled("Old Value:  ", record->data) + labelled("New Value:  ", record->newData);
    } else {
        text += labelled("Type:  ", record->type) + labelled("Value:  ", record->data);
    }
    return text + "\n";
}

}  // namespace corvalence::components
