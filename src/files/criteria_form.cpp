#include "files/criteria_form.h"

#include <tuple>

#include "base/number_text.h"
#include "store/database_creation.h"

namespace corvalence::files {

namespace {

std::optional<std::uint32_t> byteCount(std::string_view text) {
    const auto value = base::scanInteger(text);
    if (!value || *value < 0 || *value > UINT32_MAX) return std::nullopt;
    if (text.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    return static_cast<std::uint32_t>(*value);
}

FormFault notASize(FormField field) {
    return {field, "A size is a number of bytes from 0 to 4294967295."};
}

std::optional<FormFault> findSizeFault(const CriteriaForm& form) {
    const auto first = byteCount(form.firstSize);
    if (!first) return notASize(FormField::FirstSize);
    if (!hasSecond(form.sizeRelation)) return std::nullopt;
    const auto second = byteCount(form.secondSize);
    if (!second) return notASize(FormField::SecondSize);
    if (*first >= *second)
        return FormFault{FormField::SecondSize, "The second size has to be larger than the first."};
    return std::nullopt;
}

auto fieldsOf(const base::LocalTime& time) {
    return std::tie(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

std::optional<FormFault> findTimeFault(const TimeCriterion& time) {
    if (!hasSecond(time.relation) || fieldsOf(time.first) < fieldsOf(time.second)) return std::nullopt;
    return FormFault{FormField::SecondTime, "The second time has to be later than the first."};
}

std::optional<FormFault> findGroupFault(const CriteriaForm& form, CriteriaGroup group) {
    const AbilitiesCriterion& abilities = form.abilities;
    switch (group) {
        case CriteriaGroup::Size:
            return findSizeFault(form);
        case CriteriaGroup::Time:
            return findTimeFault(form.time);
        case CriteriaGroup::Contents:
            if (form.contents.text.empty())
                return FormFault{FormField::Contents,
                                 "Enter the text to be searched for, or * for any text."};
            break;
        case CriteriaGroup::Abilities:
            if (!abilities.network && !abilities.system && !abilities.cookies)
                return FormFault{FormField::Abilities, "Check at least one of the abilities."};
            break;
        case CriteriaGroup::Type:
        case CriteriaGroup::Attributes:
            break;
    }
    return std::nullopt;
}

FormFault notALocation(const std::string& location) {
    return {FormField::Location, location + "  is not a valid location."};
}

}  // namespace

void check(AttributeCriterion& criterion, const AttributeBox& box) {
    if (box.bit == 0) criterion.any = true;
    (box.withOthers ? criterion.withOthers : criterion.exactly) |= box.bit;
}

bool hasSecond(SizeCriterion::Relation relation) noexcept {
    return relation == SizeCriterion::Relation::Between;
}

bool hasSecond(TimeCriterion::Relation relation) noexcept {
    return relation == TimeCriterion::Relation::Between;
}

bool isEnabled(const AttributeCriterion& criterion, const AttributeBox& box) noexcept {
    return box.bit == 0 || !criterion.any;
}

std::optional<FormFault> findFault(const CriteriaForm& form) {
    for (const CriteriaGroup group : kCriteriaGroups) {
        if (!form.groups.contains(group)) continue;
        if (auto fault = findGroupFault(form, group)) return fault;
    }
    return std::nullopt;
}

Criteria criteriaOf(const CriteriaForm& form) {
    const auto takesPart = [&](CriteriaGroup group) { return form.groups.contains(group); };
    Criteria criteria;
    if (takesPart(CriteriaGroup::Size)) {
        criteria.size = SizeCriterion{form.sizeRelation, byteCount(form.firstSize).value_or(0),
                                      byteCount(form.secondSize).value_or(0)};
    }
    if (takesPart(CriteriaGroup::Time)) criteria.time = form.time;
    if (takesPart(CriteriaGroup::Type)) criteria.type = form.type;
    if (takesPart(CriteriaGroup::Attributes)) criteria.attributes = form.attributes;
    if (takesPart(CriteriaGroup::Contents)) criteria.contents = form.contents;
    if (takesPart(CriteriaGroup::Abilities)) criteria.abilities = form.abilities;
    return criteria;
}

std::optional<std::string> fullFolderPath(const std::string& typed, const base::PathRules& paths) {
    if (typed.empty()) return std::nullopt;
    const std::string folder = store::completeLocation(typed, paths);
    const bool isDrives = paths.separator == '\\';
    std::string path = paths.absolute(folder, isDrives ? "C:\\1" : "/1");
    if (path != paths.absolute(folder, isDrives ? "D:\\1" : "/2")) return std::nullopt;
    return path;
}

std::string addLocation(const std::string& typed, const base::PathRules& paths) {
    if (typed == kAnyLocation) return typed;
    return fullFolderPath(typed, paths).value_or(typed);
}

std::optional<FormFault> findAddLocationFault(platform::Platform& system, const std::string& typed) {
    if (typed == kAnyLocation) return std::nullopt;
    const auto location = fullFolderPath(typed, system.paths);
    if (!location) return notALocation(typed);
    std::string refusal = locationRefusal(system, *location);
    if (refusal.empty()) return std::nullopt;
    return FormFault{FormField::Location, std::move(refusal)};
}

std::optional<FormFault> findRemoveLocationFault(const std::string& location) {
    if (location.empty()) return notALocation(location);
    return std::nullopt;
}

}  // namespace corvalence::files
