#include "files/criteria.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace corvalence::files {

namespace {

namespace attribute = platform::attribute;

constexpr std::uint32_t kPlainBits =
    attribute::kReadOnly | attribute::kHidden | attribute::kSystem | attribute::kArchive;
constexpr std::uint32_t kStorageBits = attribute::kCompressed | attribute::kEncrypted;
// What goes with Compressed and Encrypted.
constexpr std::uint32_t kBesideStorage = attribute::kReadOnly | attribute::kHidden | attribute::kArchive;
constexpr std::uint32_t kNotContentIndexed = 0x2000;

constexpr AttributeCode kNoAttribute = 8;
constexpr AttributeCode kFirstStorageCode = 100;
constexpr AttributeCode kLastStorageCode = 115;

auto fieldsOf(const base::LocalTime& time) noexcept {
    return std::tuple(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

std::string capitals(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; });
    return result;
}

/// Whether a word is one of those with Compressed or Encrypted that the boxes know.
bool isStorageWord(std::uint32_t word) noexcept {
    const std::uint32_t storage = word & kStorageBits;
    const bool isOne = storage == attribute::kCompressed || storage == attribute::kEncrypted;
    return isOne && (word & ~(kStorageBits | kBesideStorage | kNotContentIndexed)) == 0;
}

bool passesExactly(std::uint32_t boxes, std::uint32_t word) noexcept {
    const std::uint32_t plain = boxes & kPlainBits;
    const std::uint32_t storage = boxes & kStorageBits;
    if (storage == 0) return plain != 0 && word == plain;
    return isStorageWord(word) && (word & storage) != 0 && (word & kPlainBits) == plain;
}

bool passesWithOthers(std::uint32_t boxes, std::uint32_t word) noexcept {
    if ((word & boxes & kPlainBits) != 0 && (word & ~kPlainBits) == 0) return true;
    return (word & boxes & kStorageBits) != 0 && isStorageWord(word);
}

}  // namespace

bool passes(const SizeCriterion& criterion, std::uint32_t size) noexcept {
    switch (criterion.relation) {
        case SizeCriterion::Relation::LargerThan:
            return size > criterion.first;
        case SizeCriterion::Relation::SmallerThan:
            return size < criterion.first;
        case SizeCriterion::Relation::EqualTo:
            return size == criterion.first;
        case SizeCriterion::Relation::Between:
            return size > criterion.first && size < criterion.second;
    }
    return false;
}

bool passes(const TimeCriterion& criterion, const base::LocalTime& time) noexcept {
    const auto fields = fieldsOf(time);
    switch (criterion.relation) {
        case TimeCriterion::Relation::Before:
            return fields < fieldsOf(criterion.first);
        case TimeCriterion::Relation::After:
            return fields > fieldsOf(criterion.first);
        case TimeCriterion::Relation::At:
            return fields == fieldsOf(criterion.first);
        case TimeCriterion::Relation::Between:
            return fields > fieldsOf(criterion.first) && fields < fieldsOf(criterion.second);
    }
    return false;
}

std::string_view extensionOf(std::string_view path, const base::PathRules& paths) noexcept {
    const std::string_view name = paths.fileName(path);
    const std::size_t stop = name.rfind('.');
    return stop == std::string_view::npos || stop == 0 ? std::string_view() : name.substr(stop + 1);
}

bool passes(const TypeCriterion& criterion, std::string_view path, const base::PathRules& paths) {
    if (criterion.extension == "*") return true;
    const std::string_view extension = extensionOf(path, paths);
    return extension == criterion.extension || extension == capitals(criterion.extension);
}

bool passes(const AttributeCriterion& criterion, std::uint32_t attributes) noexcept {
    if ((attributes & attribute::kFolder) != 0) return false;
    if (criterion.any) return true;
    if (criterion.exactly == 0 && criterion.withOthers == 0) return attributes == 0;
    return passesExactly(criterion.exactly, attributes) || passesWithOthers(criterion.withOthers, attributes);
}

std::uint32_t attributeWord(AttributeCode code) noexcept {
    if (code == kNoAttribute) return 0;
    if (code < kFirstStorageCode || code > kLastStorageCode) return code;
    // Steps run through read only, hidden and then archive.
    const std::uint32_t step = (code - kFirstStorageCode) % 8U;
    const std::uint32_t flags = (step & 3U) | (step >= 4 ? attribute::kArchive : 0U);
    return flags | (code - kFirstStorageCode < 8 ? attribute::kCompressed : attribute::kEncrypted);
}

Candidate Candidate::of(std::string_view path, const platform::FileStatus& status) noexcept {
    return {path, static_cast<std::uint32_t>(status.size), status.attributes, status.written, status.created};
}

Candidate Candidate::of(const FileRecord& record) noexcept {
    return {record.path, record.size, attributeWord(record.attributes), record.written, record.created};
}

bool passesWithoutContent(const Criteria& criteria, const Candidate& candidate, const base::PathRules& paths,
                          platform::Clock& clock) {
    if (criteria.size && !passes(*criteria.size, candidate.size)) return false;
    if (criteria.time) {
        const bool created = criteria.time->which == TimeCriterion::Which::Created;
        if (!passes(*criteria.time, clock.local(created ? candidate.created : candidate.written)))
            return false;
    }
    if (criteria.type && !passes(*criteria.type, candidate.path, paths)) return false;
    return !criteria.attributes || passes(*criteria.attributes, candidate.attributes);
}

}  // namespace corvalence::files
