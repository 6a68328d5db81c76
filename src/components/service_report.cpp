#include "components/service_report.h"

#include <algorithm>
#include <array>

#include "components/service_record.h"

namespace corvalence::components {

namespace {

struct CodeRow {
    std::string_view code;
    std::string_view status;   // in a report's list
    std::string_view heading;  // on a console and in a log
};

constexpr std::array<CodeRow, 4> kCodes = {{
    {service_code::kBefore, "Changed - Old Details", "Service Previously: "},
    {service_code::kNow, "Changed - New Details", "Service now: "},
    {service_code::kAdded, "Added", "New Service detected! "},
    {service_code::kRemoved, "Removed", "Service Removed! "},
}};

/// The order of the report's columns; the status stands behind the second.
constexpr std::array<ServiceField, 10> kColumns = {
    ServiceField::Name,     ServiceField::DisplayName, ServiceField::State,     ServiceField::Type,
    ServiceField::Controls, ServiceField::BinaryPath,  ServiceField::StartType, ServiceField::ErrorControl,
    ServiceField::Account,  ServiceField::Description};
constexpr std::size_t kStatusColumn = 2;

struct Record {
    std::vector<std::string_view> fields;  // without the code
    const CodeRow& code;

    std::string_view field(ServiceField wanted) const {
        const auto at = static_cast<std::size_t>(wanted);
        return at < fields.size() ? fields[at] : std::string_view();
    }
};

std::optional<Record> parse(std::string_view line) {
    auto fields = base::splitFields(line);
    if (fields.size() != 6 && fields.size() != 11) return std::nullopt;
    const auto code = std::find_if(kCodes.begin(), kCodes.end(),
                                   [&](const CodeRow& row) { return row.code == fields.back(); });
    if (code == kCodes.end()) return std::nullopt;
    fields.pop_back();
    return Record{std::move(fields), *code};
}

}  // namespace

bool ServiceRenderer::beginsRecord(std::size_t, std::string_view line) const {
    const auto record = parse(line);
    return !record || record->code.code != service_code::kNow;
}

std::optional<std::vector<std::string>> ServiceRenderer::columns(std::string_view line) const {
    const auto record = parse(line);
    if (!record) return std::nullopt;
    std::vector<std::string> columns;
    for (const ServiceField field : kColumns)
        columns.emplace_back(record->field(field));
    columns.insert(columns.begin() + kStatusColumn, std::string(record->code.status));
    return columns;
}

std::vector<reports::ReportField> ServiceRenderer::fields(std::size_t, std::string_view line) const {
    const auto record = parse(line);
    if (!record) return {};
    std::vector<reports::ReportField> fields = {{"code", std::string(record->code.code)}};
    for (std::size_t at = 0; at < record->fields.size(); ++at)
        fields.push_back({kServiceFields[at].name, std::string(record->fields[at])});
    return fields;
}

std::string ServiceRenderer::text(std::size_t, std::string_view line) const {
    const auto record = parse(line);
    if (!record) return {};
    std::string text;
    if (record->code.code == service_code::kBefore)
        text = "Service " + std::string(record->field(ServiceField::Name)) + " has been changed!\n";
    text += record->code.heading;
    for (std::size_t at = 0; at < record->fields.size(); ++at)
        text.append("\n").append(kServiceFields[at].label).append(record->fields[at]);
    return text + "\n";
}

}  // namespace corvalence::components
