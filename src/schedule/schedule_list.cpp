#include "schedule/schedule_list.h"

#include <algorithm>

#include "base/page_buffer.h"
#include "base/record_text.h"
#include "crypto/sealed_file.h"
#include "crypto/secure_zero.h"

namespace corvalence::schedule {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;

/// Nothing where the line is none of a database.
std::string_view pathIn(std::string_view line) {
    const std::size_t end = line.find(base::kSeparator);
    const std::string_view path = line.substr(0, end == std::string_view::npos ? 0 : end);
    const bool isText = std::none_of(path.begin(), path.end(), [](char c) { return c > 0 && c < ' '; });
    return isText && base::isRecordPath(path) ? path : std::string_view();
}

}  // namespace

/// The lines with their ends, as views into the text that they come from. Room is made for whole blocks
/// before it is read, so that it never lies inside its object and the views outlive a move.
struct ScheduleList::Lines {
    crypto::SecretText text;
    std::vector<std::string_view> lines;
    bool isTorn = false;

    void split() {
        for (std::string_view rest = text.view(); !rest.empty();) {
            const std::size_t feed = rest.find('\n');
            const std::string_view line = rest.substr(0, feed == std::string_view::npos ? feed : feed + 1);
            if (base::isStaleTail(rest.size()) && pathIn(line).empty()) break;
            lines.push_back(line);
            rest.remove_prefix(line.size());
        }
    }

    /// What is left when those that `goes` tells are taken out.
    template <typename Predicate>
    crypto::SecretText without(Predicate&& goes) const {
        crypto::SecretText kept;
        for (const std::string_view line : lines) {
            if (goes(line)) continue;
            kept.append(line);
            if (!line.ends_with('\n')) kept.append(kLineEnd);
        }
        return kept;
    }
};

std::string ScheduleList::path() const {
    return vault_.configuration.folder(settings::key::kScheduleDirectory) + "Database Checking Schedule";
}

ScheduleList::Lines ScheduleList::readLines() const {
    platform::FileSystem& files = vault_.platform.files;
    const std::string list = path();
    if (!files.status(list, platform::Follow::Yes))
        throw crypto::RequiredFileMissing(list, crypto::kUnsealSchedule.referenceCode);
    const auto file = files.openShared(list);
    const std::uint64_t whole = file->size() / kBlock * kBlock;
    Lines lines;
    lines.isTorn = whole != file->size();
    lines.text.reserve(static_cast<std::size_t>(whole));
    crypto::UnsealReader reader(*file, whole, vault_.session.key, vault_.session.chains.ScheduleIV,
                                crypto::kUnsealSchedule.rule);
    base::PageBuffer block(static_cast<std::size_t>(std::min<std::uint64_t>(whole, 64 * 1024)));
    while (const std::size_t count = reader.read(block.bytes()))
        lines.text.append(base::textOf(block.bytes().first(count)));
    crypto::secureZero(block.data(), block.size());
    lines.split();
    return lines;
}

ScheduleContent ScheduleList::read() const {
    const Lines read = readLines();
    ScheduleContent content;
    content.isTorn = read.isTorn;
    for (const std::string_view line : read.lines) {
        const std::string_view database = pathIn(line);
        if (database.empty()) {
            content.damaged.emplace_back(base::withoutLineEnd(line));
        } else {
            content.databases.emplace_back(database);
        }
    }
    return content;
}

ScheduleList::Lines ScheduleList::linesToExtend(const std::string& database) const {
    if (!base::isRecordPath(database)) throw base::FileFailure(base::Cause::BadPath, 0, database);
    if (!vault_.platform.files.status(path(), platform::Follow::Yes)) return {};
    Lines lines = readLines();
    // Sealing it anew would drop what cannot be read, and nobody would have been told.
    if (lines.isTorn) throw base::FileFailure(base::Cause::InvalidFile, 0, path());
    return lines;
}

bool ScheduleList::add(const std::string& database) {
    const Lines lines = linesToExtend(database);
    const bool isListed = std::any_of(lines.lines.begin(), lines.lines.end(), [&](std::string_view line) {
        return vault_.platform.paths.equal(pathIn(line), database);
    });
    if (isListed) return false;
    crypto::SecretText text = lines.without([](std::string_view) { return false; });
    text.append(database);
    text.append(base::kSeparator);
    text.append(kLineEnd);
    write(text.view());
    return true;
}

void ScheduleList::addTimed(const std::string& database, std::uint32_t seconds, char letter) {
    crypto::SecretText text = linesToExtend(database).without([&](std::string_view line) {
        return line.starts_with(' ') || vault_.platform.paths.beginsWith(line, database);
    });
    std::string line;
    base::appendField(line, database);
    base::appendField(line, std::to_string(seconds));
    text.append(line);
    text.append(letter);
    text.append(kLineEnd);
    write(text.view());
}

std::vector<std::string> ScheduleList::remove(const std::string& database) {
    const Lines lines = readLines();
    // What cannot be read may name it as well.
    if (lines.isTorn) throw base::FileFailure(base::Cause::InvalidFile, 0, path());
    std::vector<std::string> removed;
    const crypto::SecretText kept = lines.without([&](std::string_view line) {
        const bool goes = !pathIn(line).empty() && vault_.platform.paths.beginsWith(line, database);
        if (goes) removed.emplace_back(pathIn(line));
        return goes;
    });
    if (!removed.empty()) write(kept.view());
    return removed;
}

std::vector<std::string> ScheduleList::dropDamaged() {
    const Lines lines = readLines();
    std::vector<std::string> dropped;
    const crypto::SecretText kept = lines.without([&](std::string_view line) {
        const bool goes = pathIn(line).empty();
        if (goes) dropped.emplace_back(base::withoutLineEnd(line));
        return goes;
    });
    if (lines.isTorn || !dropped.empty()) write(kept.view());
    return dropped;
}

void ScheduleList::databaseDeleted(const std::string& database) {
    platform::Platform& system = vault_.platform;
    if (!system.files.status(path(), platform::Follow::Yes)) return;
    for (const std::string& gone : remove(database)) {
        if (system.paths.equal(gone, database)) continue;
        system.ui.message(platform::Icon::Warning,
                          gone +
                              " was taken out of the checking schedule as well: its path begins with that "
                              "of the deleted database.");
    }
}

void ScheduleList::write(std::string_view text) {
    crypto::sealFile(vault_.working, text, path(), vault_.session.key, vault_.session.chains.ScheduleIV);
}

}  // namespace corvalence::schedule
