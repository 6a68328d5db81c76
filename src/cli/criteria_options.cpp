#include "cli/criteria_options.h"

#include <array>
#include <vector>

#include "base/number_text.h"
#include "cli/exit_code.h"
#include "cli/session.h"

namespace corvalence::cli {

namespace {

template <typename Value>
struct Named {
    std::string_view name;
    Value value;
};

using SizeRelation = files::SizeCriterion::Relation;
using TimeRelation = files::TimeCriterion::Relation;
namespace attribute = platform::attribute;

constexpr std::array<Named<SizeRelation>, 4> kSizeRelations = {{{"larger", SizeRelation::LargerThan},
                                                                {"smaller", SizeRelation::SmallerThan},
                                                                {"equal", SizeRelation::EqualTo},
                                                                {"between", SizeRelation::Between}}};
constexpr std::array<Named<TimeRelation>, 4> kTimeRelations = {{{"before", TimeRelation::Before},
                                                                {"after", TimeRelation::After},
                                                                {"at", TimeRelation::At},
                                                                {"between", TimeRelation::Between}}};
constexpr std::array<Named<std::uint32_t>, 6> kAttributes = {{{"read-only", attribute::kReadOnly},
                                                              {"hidden", attribute::kHidden},
                                                              {"system", attribute::kSystem},
                                                              {"archive", attribute::kArchive},
                                                              {"compressed", attribute::kCompressed},
                                                              {"encrypted", attribute::kEncrypted}}};
using Ability = bool files::AbilitiesCriterion::*;
constexpr std::array<Named<Ability>, 3> kAbilities = {{{"network", &files::AbilitiesCriterion::network},
                                                       {"system", &files::AbilitiesCriterion::system},
                                                       {"cookies", &files::AbilitiesCriterion::cookies}}};

[[noreturn]] void refuse(std::string_view option, const std::string& text, std::string_view form) {
    throw CommandEnd(ExitCode::Usage, std::string(option) + " " + text + ": it takes " + std::string(form));
}

template <typename Value, std::size_t count>
const Value* find(const std::array<Named<Value>, count>& table, std::string_view name) {
    for (const Named<Value>& row : table)
        if (row.name == name) return &row.value;
    return nullptr;
}

/// "between:1:2" as "between" and "1:2".
std::pair<std::string_view, std::string_view> splitRelation(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) return {text, {}};
    return {text.substr(0, colon), text.substr(colon + 1)};
}

std::optional<std::uint32_t> byteCount(std::string_view text) {
    const auto value = base::scanInteger(text);
    if (!value || *value < 0 || *value > UINT32_MAX || std::to_string(*value) != text) return std::nullopt;
    return static_cast<std::uint32_t>(*value);
}

files::SizeCriterion parseSize(const std::string& text) {
    constexpr std::string_view kForm =
        "larger:N, smaller:N, equal:N or between:N:N, with N from 0 to 4294967295.";
    const auto [name, rest] = splitRelation(text);
    const SizeRelation* relation = find(kSizeRelations, name);
    if (relation == nullptr) refuse("--size", text, kForm);
    const bool isBetween = *relation == SizeRelation::Between;
    const auto [first, second] = isBetween ? splitRelation(rest) : std::pair(rest, std::string_view("0"));
    const auto from = byteCount(first);
    const auto to = byteCount(second);
    if (!from || !to) refuse("--size", text, kForm);
    return {*relation, *from, *to};
}

/// "2024-02-29T12:30:05", a time that there is.
std::optional<base::LocalTime> localTime(std::string_view text) {
    constexpr std::string_view kPattern = "dddd-dd-ddTdd:dd:dd";
    if (text.size() != kPattern.size()) return std::nullopt;
    for (std::size_t i = 0; i < kPattern.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kPattern[i] == 'd' ? !isDigit : text[i] != kPattern[i]) return std::nullopt;
    }
    const auto field = [&](std::size_t at, std::size_t length) {
        return static_cast<int>(base::scanInteger(text.substr(at, length)).value_or(0));
    };
    const base::LocalTime time{field(0, 4),  field(5, 2),  field(8, 2),
                               field(11, 2), field(14, 2), field(17, 2)};
    const bool isLeap = (time.year % 4 == 0 && time.year % 100 != 0) || time.year % 400 == 0;
    constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (time.month < 1 || time.month > 12) return std::nullopt;
    const int days = kDays[static_cast<std::size_t>(time.month - 1)] + (time.month == 2 && isLeap ? 1 : 0);
    const bool exists =
        time.day >= 1 && time.day <= days && time.hour <= 23 && time.minute <= 59 && time.second <= 59;
    return exists ? std::optional(time) : std::nullopt;
}

files::TimeCriterion parseTime(std::string_view option, const std::string& text,
                               files::TimeCriterion::Which which) {
    constexpr std::string_view kForm =
        "before:T, after:T, at:T or between:T:T, with local times T as 2024-02-29T12:30:05.";
    constexpr std::size_t kTimeLength = 19;
    const auto [name, rest] = splitRelation(text);
    const TimeRelation* relation = find(kTimeRelations, name);
    if (relation == nullptr) refuse(option, text, kForm);
    const bool isBetween = *relation == TimeRelation::Between;
    if (isBetween && (rest.size() != 2 * kTimeLength + 1 || rest[kTimeLength] != ':'))
        refuse(option, text, kForm);
    const auto first = localTime(isBetween ? rest.substr(0, kTimeLength) : rest);
    const auto second =
        isBetween ? localTime(rest.substr(kTimeLength + 1)) : std::optional(base::LocalTime{});
    if (!first || !second) refuse(option, text, kForm);
    return {which, *relation, *first, *second};
}

std::vector<std::string_view> splitList(std::string_view text) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        parts.push_back(text.substr(0, comma));
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return parts;
}

files::AttributeCriterion parseAttributes(const std::string& text) {
    constexpr std::string_view kForm =
        "a list of read-only, hidden, system, archive, compressed and encrypted, each with + behind it where "
        "others may be set as well; or any; or none.";
    files::AttributeCriterion criterion;
    if (text == "none") return criterion;
    for (std::string_view name : splitList(text)) {
        if (name == "any") {
            criterion.any = true;
            continue;
        }
        const bool withOthers = name.ends_with('+');
        if (withOthers) name.remove_suffix(1);
        const std::uint32_t* bit = find(kAttributes, name);
        if (bit == nullptr) refuse("--attributes", text, kForm);
        (withOthers ? criterion.withOthers : criterion.exactly) |= *bit;
    }
    if (text.empty()) refuse("--attributes", text, kForm);
    return criterion;
}

files::AbilitiesCriterion parseAbilities(const std::string& text) {
    constexpr std::string_view kForm = "a list of network, system and cookies.";
    files::AbilitiesCriterion criterion;
    for (const std::string_view name : splitList(text)) {
        const Ability* ability = find(kAbilities, name);
        if (ability == nullptr) refuse("--abilities", text, kForm);
        criterion.** ability = true;
    }
    if (text.empty()) refuse("--abilities", text, kForm);
    return criterion;
}

}  // namespace

files::Criteria parseCriteria(const CriteriaTexts& texts) {
    using Which = files::TimeCriterion::Which;
    files::Criteria criteria;
    if (texts.size) criteria.size = parseSize(*texts.size);
    if (texts.created && texts.modified) {
        throw CommandEnd(ExitCode::Usage, "Only one of --created and --modified can be given.");
    }
    if (texts.created) criteria.time = parseTime("--created", *texts.created, Which::Created);
    if (texts.modified) criteria.time = parseTime("--modified", *texts.modified, Which::Modified);
    if (texts.type) criteria.type = files::TypeCriterion{*texts.type};
    if (texts.attributes) criteria.attributes = parseAttributes(*texts.attributes);
    if (texts.contents && !texts.contents->empty()) {
        criteria.contents =
            files::ContentsCriterion{*texts.contents, texts.matchCase, texts.wholeWord, texts.textOnly};
    } else if (texts.contents || texts.matchCase || texts.wholeWord || texts.textOnly) {
        throw CommandEnd(ExitCode::Usage,
                         "--match-case, --whole-word and --text-only go with --contents and its text.");
    }
    if (texts.abilities) criteria.abilities = parseAbilities(*texts.abilities);
    return criteria;
}

}  // namespace corvalence::cli
