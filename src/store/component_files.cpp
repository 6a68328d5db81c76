#include "store/component_files.h"

#include <array>
#include <span>
#include <string_view>

namespace corvalence::store {

namespace {

struct Row {
    DatabaseKind kind;
    std::array<std::string_view, 4> standalone;
    std::array<std::string_view, 4> component;
    std::size_t count;
};

// What stands behind the path of the database.
constexpr std::array<Row, 4> kRows = {{
    {DatabaseKind::DirectoryStructure, {"", "d", "a", "Bn"}, {"D", "Dd", "a", "Bn"}, 4},
    {DatabaseKind::Permissions, {""}, {"P"}, 1},
    {DatabaseKind::Registry, {""}, {"R"}, 1},
    {DatabaseKind::Services, {""}, {"S"}, 1},
}};

}  // namespace

std::vector<std::string> componentFiles(DatabaseKind kind, Form form, const std::string& database) {
    std::vector<std::string> files;
    for (const Row& row : kRows) {
        if (row.kind != kind) continue;
        for (const std::string_view suffix :
             std::span(form == Form::Standalone ? row.standalone : row.component).first(row.count)) {
            files.push_back(database + std::string(suffix));
        }
    }
    return files;
}

std::vector<std::string> siblingFiles(DatabaseKind kind, const std::string& database) {
    if (kind != DatabaseKind::Numbered) {
        auto files = componentFiles(kind, Form::Standalone, database);
        files.erase(files.begin());
        return files;
    }
    std::vector<std::string> all;
    for (const Row& row : kRows) {
        const auto files = componentFiles(row.kind, Form::Component, database);
        all.insert(all.end(), files.begin(), files.end());
    }
    return all;
}

std::vector<std::string> componentMarks(const std::string& database) {
    std::vector<std::string> marks;
    for (const Row& row : kRows)
        marks.push_back(database + std::string(row.component.front()));
    return marks;
}

}  // namespace corvalence::store
