#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "baseline_world.h"
#include "components/registry_record.h"
#include "components/registry_report.h"

namespace corvalence::test {
namespace {

using components::renderRegistryValue;
using platform::RegistryRoot;
using platform::RegistryValue;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Counts = std::map<std::string, std::uint64_t>;

RegistryValue textValue(const std::string& name, const std::string& text, std::uint32_t type = 1) {
    return {name, type, {text.begin(), text.end()}, text};
}
RegistryValue bytesValue(std::uint32_t type, std::vector<std::uint8_t> bytes) {
    return {"n", type, std::move(bytes), {}};
}

TEST(RegistryRecord, RendersEveryTypeInItsOwnForm) {
    const auto render = [](const RegistryValue& value) {
        return renderRegistryValue(value).value_or("refused");
    };
    const std::vector<std::pair<std::uint32_t, std::string>> names = {{0, "REG_NONE"},
                                                                      {3, "REG_BINARY"},
                                                                      {7, "REG_MULTI_SZ"},
                                                                      {8, "REG_RESOURCE_LIST"},
                                                                      {9, "REG_FULL_RESOURCE_DESCRIPTOR"},
                                                                      {10, "REG_RESOURCE_REQUIREMENTS_LIST"}};
    for (const auto& [type, name] : names)
        EXPECT_EQ(render(bytesValue(type, {0, 0xAB, 9})), name +
                                                              "\x7F"
                                                              "00 ab 09 ");
    EXPECT_EQ(render(textValue("n",
                               "a\r\n\v\f\x7F"
                               "b")),
              "REG_SZ\x7F"
              "a     b");
    EXPECT_EQ(render(textValue("n", "a\nb", 2)),
              "REG_EXPAND_SZ\x7F"
              "a\r\nb");
    EXPECT_EQ(render(textValue("n", "\\x", 6)), "REG_LINK\x7F\\x");
    EXPECT_EQ(render(bytesValue(4, {0x78, 0x56, 0x34, 0x12})),
              "REG_DWORD\x7F"
              "12345678");
    EXPECT_EQ(render(bytesValue(5, {1, 0, 0, 0})),
              "REG_DWORD_BIG_ENDIAN\x7F"
              "00000001");
    EXPECT_EQ(render(bytesValue(11, {1, 0, 0, 0, 1, 0, 0, 0})), "REG_QWORD\x7F               1");
    EXPECT_EQ(render(bytesValue(12, {1})), "Unrecognised Data\x7FUnrecognised Data");
    EXPECT_EQ(render(bytesValue(3, {})), "REG_SZ\x7F ");
    EXPECT_EQ(render(textValue("n", "")), "REG_SZ\x7F ");
    RegistryValue closed = textValue("n", "");
    closed.isReadable = false;
    EXPECT_EQ(render(closed), "Error");
    RegistryValue secret = textValue("n", "abc");
    secret.isProtected = true;
    EXPECT_EQ(render(secret),
              "REG_SZ\x7FSHA-256 ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(render(bytesValue(3, std::vector<std::uint8_t>(100'000'000))), "refused");
}

class Registry : public testing::Test, public BaselineWorld {
  protected:
    Registry() : BaselineWorld(store::DatabaseKind::Registry) {
        for (const char* name : {"a", "b", "c"})
            values("Soft\\One").push_back(textValue(name, std::string("is ") + name));
        values("Soft\\Two").push_back(textValue("", "default"));
        values("Soft\\Two").push_back(textValue("many", "first\nsecond", 2));
        key("Soft\\Zero");
        values("Soft\\Zoo").push_back(textValue("last", "z"));
    }
    ListedRegistry::Key& key(const std::string& path) {
        return registry.key(RegistryRoot::LocalMachine, path);
    }
    std::vector<RegistryValue>& values(const std::string& path) { return key(path).values; }

    /// The lines without the root's name.
    std::vector<std::string> lines() {
        BaselineOutcome outcome = check();
        last = outcome;
        for (std::string& line : outcome.lines)
            line.replace(line.find("HKEY_LOCAL_MACHINE/"), 19, "");
        return outcome.lines;
    }
    BaselineOutcome last;
};

TEST_F(Registry, TellsWhatChangedCameAndWent) {
    auto& own = registry.key(RegistryRoot::Users, "S-1\\Software\\Corvalence\\Recent File List").values;
    // Five roots, "Soft" and "Zero" count as keys without values; so do those above the program's own notes.
    EXPECT_EQ(create().counts, (Counts{{"values", 16}}));
    EXPECT_THAT(lines(), IsEmpty());
    own.push_back(textValue("File1", "they change with every database that is opened"));
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(last.remarks, IsEmpty());
    values("Soft\\One")[1] = bytesValue(4, {1, 0, 0, 0});
    values("Soft\\One")[1].name = "b";
    values("Soft\\One").erase(values("Soft\\One").begin());
    values("Soft\\Two").insert(values("Soft\\Two").begin() + 1, textValue("extra", "new"));
    values("Soft\\Two")[0].text = "short";
    EXPECT_THAT(lines(), ElementsAre("R Soft/One/a", "C Soft/One/b", "C Soft/Two/", "A Soft/Two/extra"));
    EXPECT_EQ(last.counts, (Counts{{"added", 1}, {"removed", 1}, {"changed", 2}}));
    const components::RegistryRenderer renderer{world.platform.paths};
    const char* const line =
        "HKLM\\Soft\\b\x7FREG_SZ\x7Fis b\x7F"
        "C\x7FREG_DWORD\x7F"
        "00000001\x7F";
    EXPECT_THAT(*renderer.columns(line),
                ElementsAre("HKLM\\Soft", "b", "Changed.", "REG_DWORD", "is b", "00000001"));
    EXPECT_EQ(renderer.text(0, line),
              "Changed Registry Value: \nKey:  HKLM\\Soft\\b\nOld Type:  REG_SZ\nNew Type:  REG_DWORD\n"
              "Old Value:  is b\nNew Value:  00000001\n");
    EXPECT_THAT(renderer.text(0, "n\x7FREG_SZ\x7Fx\x7FR\x7F"),
                HasSubstr("Removed Registry Subkey: \nKey:  n\nType:"));
    EXPECT_FALSE(
        renderer.columns("n\x7FREG_SZ\x7Fx\x7F"
                         "C\x7F"));
}

TEST_F(Registry, DoesNotHideAShortenedValueNorOneThatMoved) {
    create();
    values("Soft\\One")[0].text = "is";  // the beginning of what it was
    EXPECT_THAT(lines(), ElementsAre("C Soft/One/a"));
    values("Soft\\One")[0].text = "is a";
    std::rotate(values("Soft\\One").begin(), values("Soft\\One").begin() + 2, values("Soft\\One").end());
    EXPECT_THAT(lines(), IsEmpty());
    values("Soft\\One")[1].text = "changed";  // a, moved as well
    EXPECT_THAT(lines(), ElementsAre("C Soft/One/a"));
    EXPECT_EQ(last.counts, (Counts{{"changed", 1}}));
}

TEST_F(Registry, CountsWhatItCannotCompareUnlessWalksAreComplete) {
    create();
    values("Soft\\Two")[1].text = "first\nother";  // only its second line
    registry.key(RegistryRoot::CurrentConfig, "new");
    EXPECT_THAT(check().lines, IsEmpty());
    EXPECT_EQ(check().faults, (Counts{{"behind_end", 1}}));
    world.set(settings::key::kCompleteWalk, "1");
    EXPECT_THAT(check().lines,
                ElementsAre("C HKEY_LOCAL_MACHINE/Soft/Two/many", "A HKEY_CURRENT_CONFIG/new"));
}

TEST_F(Registry, RefusesNamesAndValuesThatNoRecordHoldsAndGoesOnAtAClosedKey) {
    values("Soft\\One").push_back(textValue("a\nb", "x"));
    values("Soft\\One").push_back(textValue("large", std::string(2'000'000, 'x')));
    key("Soft\\x\x7Fy");
    key("Soft\\Shut").isClosed = true;
    key("Soft\\Part").isComplete = false;
    EXPECT_EQ(create().faults, (Counts{{"refused", 3}, {"incomplete", 1}}));
    EXPECT_THAT(lines(), IsEmpty());
    key("Soft\\Shut").isClosed = false;
    EXPECT_THAT(lines(), ElementsAre("C Soft/Shut"));
}

TEST_F(Registry, AsksForEveryFindingWhetherToGoOn) {
    constexpr std::uint64_t kValues = 200;
    create();
    for (std::uint64_t each = 0; each < kValues; ++each)
        values("Soft\\One").insert(values("Soft\\One").begin(), textValue(std::to_string(each), "new"));
    auto questions = questionsOfACheck();
    EXPECT_EQ(report().size(), kValues);
    EXPECT_GE(questions["Verifying..."], 2 * kValues);  // with the writing
}

// A check that was ended by force left nothing but its header in the log.
TEST_F(Registry, TellsALogWhatIsCertainAsItFindsIt) {
    create();
    values("Soft\\One")[1].text = "other";
    values("Soft\\Two").insert(values("Soft\\Two").begin() + 1, textValue("extra", "new"));
    std::swap(values("Soft\\Two")[0], values("Soft\\Two")[2]);  // only another place
    const auto namesOf = [](const std::vector<std::string>& lines) {
        std::vector<std::string> names;
        for (const std::string& line : lines)
            names.push_back(line.substr(line.rfind('\\', line.find('\x7F')) + 1).substr(0, 5));
        return names;
    };
    const auto whole = namesOf(toldUntil(UINT64_MAX));
    std::uint64_t at = 1;
    while (namesOf(toldUntil(at)).size() < whole.size())
        ASSERT_LT(++at, 1000U);
    // All of it before the walk is at its end.
    const std::uint64_t before = world.machine.ui.cancelQuestions();
    toldUntil(UINT64_MAX);
    EXPECT_LT(at, world.machine.ui.cancelQuestions() - before - whole.size());
    check();
    EXPECT_EQ(report().size(), whole.size());
}

// It never was.
TEST_F(Registry, AsksForPatienceWithAVeryLargeListOfTexts) {
    const auto large = [](std::size_t size) {
        return RegistryValue{"large", 7, std::vector<std::uint8_t>(size, 'x'), {}};
    };
    std::vector<std::string>& statuses = world.machine.ui.statuses;
    const auto told = [&] {
        const auto at =
            std::find(statuses.begin(), statuses.end(), "Please wait. - Very large registry value.");
        const bool isThere = at != statuses.end();
        if (isThere) {
            EXPECT_EQ(*std::next(at), "");
        }
        statuses.clear();
        return isThere;
    };
    values("Soft\\One").push_back(large(200'000));
    create();
    EXPECT_FALSE(told());
    check();
    EXPECT_FALSE(told());
    values("Soft\\One").back() = large(200'001);
    EXPECT_THAT(lines(), ElementsAre("C Soft/One/large"));
    EXPECT_TRUE(told());
    create("second");
    EXPECT_TRUE(told());
}

TEST_F(Registry, LeavesNothingBehindWhereItIsCancelled) {
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 5;
    EXPECT_TRUE(create().cancelled);
    world.machine.ui.cancelAt.reset();
    create();
    world.open("base");
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 5;
    EXPECT_TRUE(components::checkDatabase(world.vault(), machine, kind, world.context()).cancelled);
    world.machine.ui.cancelAt.reset();
    EXPECT_THAT(report(), IsEmpty());
}

}  // namespace
}  // namespace corvalence::test
