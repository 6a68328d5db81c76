#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/file_time.h"
#include "base/path_rules.h"
#include "files/file_record.h"
#include "platform/clock.h"

namespace corvalence::files {

// What the user asks of a file that is to be added or removed. Each criterion is plain data with one test;
// those that read a file's content are in content_search.h.

struct SizeCriterion {
    enum class Relation { LargerThan = 0, SmallerThan = 1, EqualTo = 2, Between = 3 };
    Relation relation = Relation::LargerThan;
    std::uint32_t first = 0;
    std::uint32_t second = 0;  // of Between; both bounds are outside
};
/// `size`: the low 32 bits of a size in bytes.
bool passes(const SizeCriterion& criterion, std::uint32_t size) noexcept;

struct TimeCriterion {
    enum class Which { Created = 0, Modified = 1 };
    enum class Relation { Before = 0, After = 1, At = 2, Between = 3 };
    Which which = Which::Created;
    Relation relation = Relation::Before;
    base::LocalTime first;
    base::LocalTime second;  // of Between; both bounds are outside
};
/// Compares by year, month, day, hour, minute and second, the first difference deciding.
bool passes(const TimeCriterion& criterion, const base::LocalTime& time) noexcept;

struct TypeCriterion {
    /// Matches an extension that is equal to it or to its capitals; "*" any, the empty text files without.
    std::string extension;
};
bool passes(const TypeCriterion& criterion, std::string_view path, const base::PathRules& paths);

/// The text behind the last full stop of the file name; empty where there is none or it stands first.
std::string_view extensionOf(std::string_view path, const base::PathRules& paths) noexcept;

struct AttributeCriterion {
    /// Exactly these, and no others; 0: no such box. Bits of platform::attribute.
    std::uint32_t exactly = 0;
    /// Any of these, whatever else of Read-only, Hidden, System and Archive is set; 0: none.
    std::uint32_t withOthers = 0;
    bool any = false;
};
/// `attributes`: the Windows attribute word. A criterion without anything passes what has no attribute set;
/// folders never pass.
bool passes(const AttributeCriterion& criterion, std::uint32_t attributes) noexcept;

/// The attribute word that a record's code stands for: 8 is no attribute, 100 to 115 are combinations with
/// Compressed and Encrypted.
std::uint32_t attributeWord(AttributeCode code) noexcept;

struct ContentsCriterion {
    std::string text;  // "*" passes every file
    bool matchCase = false;
    bool wholeWord = false;
    bool textOnly = false;  // a byte below 32 or above 126 ends the search of that file
};

/// Alternatives: a file with any of them passes.
struct AbilitiesCriterion {
    bool network = false;
    bool system = false;
    bool cookies = false;
};

/// Any mix of criteria; all that are there must hold. Without any, every file passes.
struct Criteria {
    std::optional<SizeCriterion> size;
    std::optional<TimeCriterion> time;
    std::optional<TypeCriterion> type;
    std::optional<AttributeCriterion> attributes;
    std::optional<ContentsCriterion> contents;
    std::optional<AbilitiesCriterion> abilities;

    bool readsContent() const noexcept { return contents || abilities; }
};

/// What the criteria that need no content are tested on.
struct Candidate {
    std::string_view path;
    std::uint32_t size = 0;
    std::uint32_t attributes = 0;
    base::FileTime written;
    base::FileTime created;

    static Candidate of(std::string_view path, const platform::FileStatus& status) noexcept;
    static Candidate of(const FileRecord& record) noexcept;
};

/// Tests all criteria but those that read content.
bool passesWithoutContent(const Criteria& criteria, const Candidate& candidate, const base::PathRules& paths,
                          platform::Clock& clock);

}  // namespace corvalence::files
