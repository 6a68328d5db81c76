#include "files/criteria_form.h"

#include <gtest/gtest.h>

#include "world.h"

namespace corvalence::test {
namespace {

using files::CriteriaForm;
using files::CriteriaGroup;
using files::FormField;
using SizeRelation = files::SizeCriterion::Relation;
using TimeRelation = files::TimeCriterion::Relation;

std::optional<FormField> faultOf(const CriteriaForm& form) {
    const auto fault = files::findFault(form);
    return fault ? std::optional(fault->field) : std::nullopt;
}

TEST(CriteriaForm, NamesTheFieldThatIsToBeFilledInBetter) {
    CriteriaForm form;
    EXPECT_EQ(faultOf(form), std::nullopt);
    form.groups = {CriteriaGroup::Size, CriteriaGroup::Time, CriteriaGroup::Contents,
                   CriteriaGroup::Abilities};
    for (const char* text : {"", " 1", "1 ", "+1", "-1", "0x1", "4294967296", "99999999999999999999"}) {
        form.firstSize = text;
        EXPECT_EQ(faultOf(form), FormField::FirstSize) << text;
    }
    form.firstSize = "4294967295";
    form.sizeRelation = SizeRelation::Between;
    EXPECT_EQ(faultOf(form), FormField::SecondSize);
    form.secondSize = "4294967295";
    EXPECT_EQ(faultOf(form), FormField::SecondSize);
    form.firstSize = "4294967294";
    form.time = {files::TimeCriterion::Which::Modified,
                 TimeRelation::Between,
                 {2024, 2, 29, 12, 0, 1},
                 {2024, 2, 29, 12, 0, 1}};
    EXPECT_EQ(faultOf(form), FormField::SecondTime);
    form.time.second.second = 2;
    EXPECT_EQ(faultOf(form), FormField::Contents);
    form.contents.text = "*";
    EXPECT_EQ(faultOf(form), FormField::Abilities);
    form.abilities.cookies = true;
    EXPECT_EQ(faultOf(form), std::nullopt);
}

TEST(CriteriaForm, AsksOnlyForTheCriteriaThatTakePart) {
    CriteriaForm form;
    form.groups = {CriteriaGroup::Size, CriteriaGroup::Type};
    form.firstSize = "10";
    form.secondSize = "not a number";  // cannot be filled in now
    form.type.extension = "exe";
    form.contents.text = "text";
    const files::Criteria criteria = files::criteriaOf(form);
    EXPECT_EQ(criteria.size->first, 10U);
    EXPECT_EQ(criteria.type->extension, "exe");
    EXPECT_FALSE(criteria.time || criteria.attributes || criteria.contents || criteria.abilities);
}

TEST(CriteriaForm, EachAttributeBoxPassesWhatItSays) {
    const auto passes = [](std::size_t box, std::uint32_t attributes) {
        files::AttributeCriterion criterion;
        files::check(criterion, files::kAttributeBoxes[box]);
        EXPECT_EQ(files::isEnabled(criterion, files::kAttributeBoxes[0]), !criterion.any);
        return files::passes(criterion, attributes);
    };
    using namespace platform::attribute;
    for (std::size_t box = 0; box < files::kAttributeBoxes.size(); ++box) {
        const files::AttributeBox& row = files::kAttributeBoxes[box];
        SCOPED_TRACE(row.text);
        EXPECT_TRUE(passes(box, row.bit | (row.bit > 0x20 && row.withOthers ? kReadOnly : 0U)));
        EXPECT_EQ(passes(box, kArchive | kHidden),
                  row.bit == 0 || (row.withOthers && (row.bit == kArchive || row.bit == kHidden)));
    }
}

TEST(CriteriaForm, AddsFromFullPathsOfFoldersOnly) {
    World world;
    const std::string folder = world.path("");
    const auto fault = [&](const std::string& typed) {
        const auto found = files::findAddLocationFault(world.platform, typed);
        return found ? found->text : "";
    };
    EXPECT_EQ(fault("*"), "");
    EXPECT_EQ(fault(folder), "");
    EXPECT_EQ(files::addLocation(folder + "x/..", world.platform.paths), folder.substr(0, folder.size() - 1));
    for (const std::string& typed : {std::string(), std::string("files"), std::string("./files"), folder + "gone"})
        EXPECT_EQ(fault(typed), typed + "  is not a valid location.");

    const base::PathRules windows{'\\', true};
    EXPECT_EQ(files::addLocation("c", windows), files::addLocation("c:\\", windows));
    EXPECT_EQ(files::addLocation("d:\\a\\", windows), "D:\\a");
    EXPECT_EQ(files::addLocation("\\a", windows), "\\a");
    EXPECT_TRUE(files::findRemoveLocationFault("").has_value());
    EXPECT_FALSE(files::findRemoveLocationFault(folder + "gone").has_value());
}

}  // namespace
}  // namespace corvalence::test
