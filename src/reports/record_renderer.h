#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvalence::reports {

struct ReportField {
    std::string_view name;
    std::string value;
    bool isPath = false;
};

/// How the lines of one kind of report are shown; each lives with its kind. Lines come without their ends,
/// and with their number in the report, from 0, where the order of lines says what they are.
class RecordRenderer {
  public:
    virtual ~RecordRenderer() = default;

    /// Whether line number `number` of a report is the first of a record; a page never splits one.
    virtual bool beginsRecord(std::size_t /*number*/, std::string_view /*line*/) const { return true; }
    /// The texts of the line's row, by the columns of its kind; nothing where it is no line of this kind.
    virtual std::optional<std::vector<std::string>> columns(std::string_view line) const = 0;
    /// All rows of the line; more than one where its kind shows a line on several.
    virtual std::vector<std::vector<std::string>> rows(std::string_view line) const {
        std::vector<std::vector<std::string>> rows;
        if (auto row = columns(line)) rows.push_back(*std::move(row));
        return rows;
    }
    /// Names and values for documents, "code" first where the kind has codes. Empty where columns() gives
    /// nothing.
    virtual std::vector<ReportField> fields(std::size_t number, std::string_view line) const = 0;
    /// The line of a log or a console: "File added:   " and the path. Empty where columns() gives nothing.
    virtual std::string text(std::size_t number, std::string_view line) const = 0;
};

}  // namespace corvalence::reports
