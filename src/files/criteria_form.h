#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "files/criteria.h"
#include "files/location.h"
#include "platform/platform.h"

namespace corvalence::files {

/// The criteria that have a group of fields of their own.
enum class CriteriaGroup { Size, Time, Type, Attributes, Contents, Abilities };

inline constexpr std::array<CriteriaGroup, 6> kCriteriaGroups = {
    CriteriaGroup::Size,       CriteriaGroup::Time,     CriteriaGroup::Type,
    CriteriaGroup::Attributes, CriteriaGroup::Contents, CriteriaGroup::Abilities};

/// One box of the Attributes group.
struct AttributeBox {
    std::string_view text;
    std::uint32_t bit;  // 0: any attributes
    bool withOthers;
};

inline constexpr std::array<AttributeBox, 13> kAttributeBoxes = {{
    {"Read-only.", platform::attribute::kReadOnly, false},
    {"Archive.", platform::attribute::kArchive, false},
    {"Hidden.", platform::attribute::kHidden, false},
    {"System.", platform::attribute::kSystem, false},
    {"Read-only plus any others.", platform::attribute::kReadOnly, true},
    {"Archive plus any others.", platform::attribute::kArchive, true},
    {"Hidden plus any others.", platform::attribute::kHidden, true},
    {"System plus any others.", platform::attribute::kSystem, true},
    {"Any ", 0, false},
    {"Compressed", platform::attribute::kCompressed, false},
    {"Encrypted", platform::attribute::kEncrypted, false},
    {"Compressed plus any others.", platform::attribute::kCompressed, true},
    {"Encrypted plus any others.", platform::attribute::kEncrypted, true},
}};

void check(AttributeCriterion& criterion, const AttributeBox& box);

/// What a user fills in to pick files: the texts as they were typed, and the criteria that take part.
struct CriteriaForm {
    std::string location;
    std::set<CriteriaGroup> groups;
    SizeCriterion::Relation sizeRelation = SizeCriterion::Relation::LargerThan;
    std::string firstSize;  // bytes
    std::string secondSize;
    TimeCriterion time;
    TypeCriterion type;
    AttributeCriterion attributes;
    ContentsCriterion contents;
    AbilitiesCriterion abilities;
};

// Which fields can be filled in.

bool hasSecond(SizeCriterion::Relation relation) noexcept;
bool hasSecond(TimeCriterion::Relation relation) noexcept;
/// With any attributes asked for the other boxes say nothing.
bool isEnabled(const AttributeCriterion& criterion, const AttributeBox& box) noexcept;

/// The field that is to be filled in better.
enum class FormField { Location, FirstSize, SecondSize, SecondTime, Contents, Abilities };

struct FormFault {
    FormField field;
    std::string text;  // for the user
};

/// What is wrong with the fields, but for the location; the first fault in their order.
std::optional<FormFault> findFault(const CriteriaForm& form);
/// Of a form without a fault: the criteria of the groups that take part.
Criteria criteriaOf(const CriteriaForm& form);

/// The folder that a typed location means. Nothing where it means different folders by the current one: a
/// program with windows has none that its user knows of.
std::optional<std::string> fullFolderPath(const std::string& typed, const base::PathRules& paths);

/// The folder to add from that a typed location without a fault means, a full path, or "*".
std::string addLocation(const std::string& typed, const base::PathRules& paths);
/// Why nothing can be added from there: it is no full path or no folder, or its drive does not answer.
std::optional<FormFault> findAddLocationFault(platform::Platform& system, const std::string& typed);
/// Why nothing can be removed by this location. Its folder need not be there any more.
std::optional<FormFault> findRemoveLocationFault(const std::string& location);

}  // namespace corvalence::files
