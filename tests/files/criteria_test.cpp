#include "files/criteria.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace corvalence::test {
namespace {

using files::AttributeCriterion;
using files::SizeCriterion;
using files::TimeCriterion;
namespace attribute = platform::attribute;

TEST(SizeCriterion, KeepsItsBoundsOutside) {
    using Relation = SizeCriterion::Relation;
    struct Row {
        Relation relation;
        std::vector<std::uint32_t> passing;  // of 9 to 21
    };
    for (const Row& row : {Row{Relation::LargerThan, {11, 12, 19, 20, 21}}, Row{Relation::SmallerThan, {9}},
                           Row{Relation::EqualTo, {10}}, Row{Relation::Between, {11, 12, 19}}}) {
        std::vector<std::uint32_t> passing;
        for (const std::uint32_t size : {9U, 10U, 11U, 12U, 19U, 20U, 21U})
            if (passes(SizeCriterion{row.relation, 10, 20}, size)) passing.push_back(size);
        EXPECT_EQ(passing, row.passing) << static_cast<int>(row.relation);
    }
    // The size of a record has 32 bits, and none of them is a sign.
    EXPECT_TRUE(passes(SizeCriterion{Relation::LargerThan, 0x7FFF'FFFF, 0}, 0x8000'0000));
}

TEST(TimeCriterion, ComparesFieldsInTheirOrder) {
    using Relation = TimeCriterion::Relation;
    const base::LocalTime first{2024, 2, 29, 12, 30, 5};
    const base::LocalTime second{2024, 3, 1, 0, 0, 0};
    struct Row {
        base::LocalTime time;
        std::string passing;  // Before, After, At, Between
    };
    for (const Row& row :
         {Row{{2024, 2, 29, 12, 30, 4}, "B"}, Row{first, "@"}, Row{{2024, 2, 29, 12, 30, 6}, "A-"},
          Row{{2023, 12, 31, 23, 59, 59}, "B"}, Row{{2024, 2, 29, 23, 59, 59}, "A-"}, Row{second, "A"},
          Row{{2025, 1, 1, 0, 0, 0}, "A"}, Row{{2024, 1, 31, 23, 0, 0}, "B"}}) {
        std::string passing;
        for (const auto& [relation, sign] :
             {std::pair(Relation::Before, 'B'), std::pair(Relation::After, 'A'), std::pair(Relation::At, '@'),
              std::pair(Relation::Between, '-')}) {
            const TimeCriterion criterion{TimeCriterion::Which::Created, relation, first, second};
            if (passes(criterion, row.time)) passing += sign;
        }
        EXPECT_EQ(passing, row.passing) << base::timeText(row.time);
    }
}

TEST(TypeCriterion, TakesTheExtensionAsGivenOrInCapitals) {
    const base::PathRules paths;
    const auto matches = [&](const char* extension, const char* path) {
        return passes(files::TypeCriterion{extension}, path, paths);
    };
    EXPECT_TRUE(matches("exe", "/a.b/x.exe") && matches("exe", "/x.EXE") && matches("*", "/x"));
    EXPECT_TRUE(matches("", "/a.b/x") && matches("", "/.profile") && matches("gz", "/x.tar.gz"));
    EXPECT_FALSE(matches("exe", "/x.Exe") || matches("EXE", "/x.exe") || matches("", "/x.exe"));
    EXPECT_FALSE(matches("profile", "/.profile") || matches("b/x", "/a.b/x"));
}

std::vector<std::uint32_t> passingWords(const AttributeCriterion& criterion) {
    std::vector<std::uint32_t> passing;
    for (std::uint32_t word = 0; word < 0x8000; ++word)
        if (passes(criterion, word)) passing.push_back(word);
    return passing;
}

struct Boxes {
    AttributeCriterion criterion;
    std::vector<std::uint32_t> words;
};

class Attributes : public testing::TestWithParam<Boxes> {};

TEST_P(Attributes, PassTheWordsOfTheirBoxesAndNoOthers) {
    EXPECT_EQ(passingWords(GetParam().criterion), GetParam().words);
}

constexpr std::uint32_t R = attribute::kReadOnly, H = attribute::kHidden, S = attribute::kSystem,
                        A = attribute::kArchive, C = attribute::kCompressed, E = attribute::kEncrypted;

INSTANTIATE_TEST_SUITE_P(
    Criteria, Attributes,
    testing::Values(Boxes{{0, 0, false}, {0}}, Boxes{{R, 0, false}, {1}}, Boxes{{A, 0, false}, {32}},
                    Boxes{{R | A, 0, false}, {33}}, Boxes{{R | H | A, 0, false}, {35}},
                    Boxes{{R | H | S | A, 0, false}, {39}},
                    Boxes{{0, R, false}, {1, 3, 5, 7, 33, 35, 37, 39}},
                    Boxes{{0, H, false}, {2, 3, 6, 7, 34, 35, 38, 39}},
                    Boxes{{0, S, false}, {4, 5, 6, 7, 36, 37, 38, 39}},
                    Boxes{{0, A, false}, {32, 33, 34, 35, 36, 37, 38, 39}},
                    Boxes{{H, S, false}, {2, 4, 5, 6, 7, 36, 37, 38, 39}},
                    Boxes{{C, 0, false}, {2048, 10240}}, Boxes{{E, 0, false}, {16384, 24576}},
                    Boxes{{C | H | A, 0, false}, {2048 + 34, 10240 + 34}}, Boxes{{C | S, 0, false}, {}},
                    Boxes{{0, C, false},
                          {2048, 2049, 2050, 2051, 2080, 2081, 2082, 2083, 10240, 10241, 10242, 10243, 10272,
                           10273, 10274, 10275}}));

TEST(AttributeCriterion, PassesEveryFileButNoFolderByAny) {
    EXPECT_TRUE(passes(AttributeCriterion{0, 0, true}, 0x2000));
    EXPECT_FALSE(passes(AttributeCriterion{0, 0, true}, attribute::kFolder));
}

// What a file's own word passes, its record has to pass as well, or a removal would not find what was added.
TEST(AttributeWord, IsTheInverseOfTheRecordsCode) {
    for (const std::uint32_t flags : {0U, 1U, 2U, 3U, 32U, 33U, 34U, 35U}) {
        for (const std::uint32_t storage : {0U, C, E})
            EXPECT_EQ(files::attributeWord(files::attributeCode(storage | flags)), storage | flags);
    }
    EXPECT_EQ(files::attributeWord(files::attributeCode(0x27)), 0x27U);
}

}  // namespace
}  // namespace corvalence::test
