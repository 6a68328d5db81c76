#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "baseline_world.h"

namespace corvalence::test {
namespace {

/// Files of a folder in the order of the walk, with a closing "/" for folders: as a person would list them.
void listInto(const std::filesystem::path& folder, const std::string& below,
              std::vector<std::string>& files) {
    std::map<std::string, bool> entries;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        entries[entry.path().filename().string()] = entry.is_directory();
    for (const auto& [name, isFolder] : entries) {
        if (isFolder) {
            listInto(folder / name, below + name + "/", files);
        } else {
            files.push_back(below + name);
        }
    }
}

/// The comparison as it is laid down, by looking through the list again and again.
std::vector<std::string> mergeBySearching(const std::vector<std::string>& list,
                                          const std::vector<std::string>& live) {
    std::vector<std::string> report;
    std::size_t at = 0;
    for (std::size_t each = 0; each < live.size(); ++each) {
        const std::string& path = live[each];
        if (at == list.size()) continue;
        if (list[at].starts_with(path)) {
            ++at;
            continue;
        }
        bool found = false;
        for (std::size_t further = at + 1; further < list.size(); ++further)
            found = found || list[further].starts_with(path);
        if (found) {
            report.push_back("R " + list[at++]);
            --each;  // the same file again
        } else {
            report.push_back("A " + path);
        }
    }
    return report;
}

TEST(DirectoryMerge, ReportsWhatALookThroughTheWholeListWould) {
    BaselineWorld machine(store::DatabaseKind::DirectoryStructure);
    std::mt19937 random(3);
    // Names that are the beginnings of others, at few places, so that they meet often.
    const auto name = [&] {
        std::string made;
        for (auto depth = random() % 3 + 1; depth > 0; --depth) {
            made += made.empty() ? "" : "/";
            made += std::string(random() % 2 + 1, static_cast<char>('a' + random() % 3));
        }
        return made + (random() % 3 == 0 ? "x" : "");
    };
    const auto filesNow = [&] {
        std::vector<std::string> files;
        listInto(fsPath(machine.world.path("")), "", files);
        return files;
    };
    const auto change = [&](std::size_t count) {
        for (; count > 0; --count) {
            const std::string each = name();
            const std::string path = machine.world.path(each);
            std::error_code error;
            if (random() % 3 == 0) std::filesystem::remove_all(fsPath(path), error);
            std::filesystem::create_directories(fsPath(path).parent_path(), error);
            if (!error && !std::filesystem::exists(fsPath(path))) writeWholeFile(path, "");
        }
    };
    for (int round = 0; round < 12; ++round) {
        change(40);
        machine.world.write("0", "");
        const auto before = filesNow();
        const std::string base = "base" + std::to_string(round);
        ASSERT_TRUE(machine.create(base).opened);
        change(15);
        std::vector<std::string> told;
        for (const std::string& line : machine.check(base).lines) {
            if (line.starts_with("A ") || line.starts_with("R ")) told.push_back(line);
        }
        EXPECT_EQ(told, mergeBySearching(before, filesNow()));
    }
}

}  // namespace
}  // namespace corvalence::test
