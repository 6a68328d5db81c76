#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "crypto/secret_text.h"
#include "store/index_record.h"
#include "store/vault.h"

namespace corvalence::components {

/// What makes a line of a list a record.
struct LineForm {
    /// What a line is that is no record.
    enum class Other { Malformed, GoesOn };

    std::size_t limit;  // bytes with its CR LF
    std::function<bool(std::string_view line)> isRecord;
    Other other = Other::Malformed;  // GoesOn: part of the record before it
};

/// The lines of a sealed component file, unsealed into memory that is wiped.
class SealedLines {
  public:
    SealedLines() = default;
    /// Throws files::DatabaseChanged where the sealed bytes are not those of the record, base::FileFailure.
    /// `progress`, where given, is asked for every block whether the user wants the work to stop; there are
    /// no lines then.
    SealedLines(const store::Vault& vault, const store::SealedFileRecord& file, const LineForm& form,
                platform::Progress* progress = nullptr);

    std::size_t size() const noexcept { return ends_.size(); }
    /// Without its CR LF; with the lines that go on with it, and theirs between them.
    std::string_view operator[](std::size_t line) const noexcept;
    /// Lines that are no records, or longer than the list's limit. They are left out as a whole.
    std::uint64_t malformed() const noexcept { return malformed_; }

  private:
    void split(const LineForm& form);

    struct End {
        std::uint64_t begin;
        std::uint32_t length;
    };

    crypto::SecretText text_;
    std::vector<End> ends_;
    std::uint64_t malformed_ = 0;
};

/// Finds lines by what they begin with, in any number of look-ups from ever later lines on: each takes about
/// as long as a search in a sorted list.
class LineIndex {
  public:
    /// The lines have to outlive it. `whole`: lines are compared as a whole instead. `progress` is asked
    /// while they are sorted; nothing is found where the user wants the work to stop.
    LineIndex(const SealedLines& lines, bool whole, platform::Progress& progress);

    /// Whether any line begins with `text`.
    bool has(std::string_view text) const;
    /// A line that equals `text` as a whole.
    std::optional<std::size_t> equal(std::string_view text) const;
    /// The first line from line `from` on that begins with `text`. From call to call `from` never falls.
    std::optional<std::size_t> find(std::string_view text, std::size_t from);

  private:
    struct Range {
        std::size_t begin;
        std::size_t end;
    };
    bool sort(platform::Progress& progress);
    Range rangeOf(std::string_view text) const;
    void dropBefore(std::size_t line);
    std::uint32_t lowest(Range range) const;

    static constexpr std::uint32_t kGone = UINT32_MAX;

    const SealedLines& lines_;
    bool whole_;
    std::vector<std::uint32_t> order_;   // lines, sorted by their bytes
    std::vector<std::uint32_t> places_;  // of each line in order_
    std::vector<std::uint32_t> tree_;    // the lowest line below each node; the lines themselves behind
    std::size_t dropped_ = 0;
};

}  // namespace corvalence::components
