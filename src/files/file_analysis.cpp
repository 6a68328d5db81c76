#include "files/file_analysis.h"

#include <algorithm>
#include <cstring>

#include "crypto/digester.h"
#include "files/backup_store.h"
#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

constexpr std::string_view kHex = "0123456789ABCDEF";

std::string hexNumber(std::uint64_t number) {
    std::string text;
    do {
        text.insert(text.begin(), kHex[number & 0xF]);
        number >>= 4;
    } while (number > 0);
    return text;
}

std::uint64_t rowsOf(std::uint64_t size, AnalysisView view) {
    return size / rowWidth(view) + (size % rowWidth(view) != 0);
}

bool areEqual(base::ByteView a, base::ByteView b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

/// The part of a block that is a row; fewer bytes at its end, none behind it.
base::ByteView rowIn(base::ByteView block, std::size_t at, std::size_t width) {
    at = std::min(at, block.size());
    return block.subspan(at, std::min(width, block.size() - at));
}

base::ByteView readBlock(std::optional<PagedBytes>& side, std::uint64_t position, ContentBuffer& block) {
    return block.bytes().first(side ? side->read(position, block.bytes()) : 0);
}

/// False where `visit` wants no more.
bool visitRows(AnalysisView view, std::uint64_t position, base::ByteView now, base::ByteView backup,
               const FileAnalysis::Visitor& visit) {
    const std::size_t width = rowWidth(view);
    for (std::size_t at = 0; at < std::max(now.size(), backup.size()); at += width) {
        const base::ByteView nowRow = rowIn(now, at, width);
        const base::ByteView backupRow = rowIn(backup, at, width);
        if (!areEqual(nowRow, backupRow) && !visit({(position + at) / width, nowRow, backupRow}))
            return false;
    }
    return true;
}

}  // namespace

AnalysisRow analysisRow(AnalysisView view, std::uint64_t number, base::ByteView bytes) {
    const std::uint64_t offset = number * rowWidth(view);
    AnalysisRow row;
    row.ascii.reserve(bytes.size());
    for (const std::uint8_t byte : bytes)
        row.ascii += byte < 32 || byte > 126 ? '.' : static_cast<char>(byte);
    if (view == AnalysisView::Text) {
        row.offset = std::to_string(offset);
        return row;
    }
    row.offset = hexNumber(offset);
    row.hex.reserve(bytes.size() * 3);
    for (const std::uint8_t byte : bytes) {
        if (!row.hex.empty()) row.hex += ' ';
        row.hex += kHex[byte >> 4];
        row.hex += kHex[byte & 0xF];
    }
    return row;
}

FileAnalysis::FileAnalysis(store::Vault& vault, const store::OpenDatabaseContext& context,
                           const FileRecord& record)
    : vault_(vault), context_(context) {
    openNow(record);
    try {
        openBackup(record);
    } catch (const base::FileFailure& failure) {
        trouble_ = failure.what();
    }
}

void FileAnalysis::openNow(const FileRecord& record) {
    try {
        now_.emplace(vault_.platform.files.openShared(record.path));
    } catch (const base::FileFailure& failure) {
        nowFailure_ = failure.reason();
    }
}

void FileAnalysis::openBackup(const FileRecord& record) {
    platform::FileSystem& files = vault_.platform.files;
    const store::BackupPair pair = store::backupPair(vault_.configuration, context_.backupNumber());
    for (const std::string& path : {pair.file, pair.index}) {
        if (files.status(path, platform::Follow::No)) continue;
        trouble_ = kBackupFileMissing;
        return;
    }
    const BackupIndex index(vault_, pair);
    const auto entries = index.find(record.path);
    if (entries.empty()) {
        backupState_ = Backup::NotBackedUp;
        return;
    }
    const BackupIndexEntry entry = backupOf(record, pair, index, entries);
    try {
        backup_.emplace(files.openShared(pair.file), entry, vault_.session.key, crypto::BackupIV(pair.index));
        backupState_ = Backup::Found;
    } catch (const base::FileFailure& failure) {
        if (failure.cause() != base::Cause::EndOfFile && failure.cause() != base::Cause::InvalidFile) throw;
        trouble_ = pair.file + " is damaged: it does not hold the whole backup of " + record.path + ".";
    }
}

BackupIndexEntry FileAnalysis::backupOf(const FileRecord& record, const store::BackupPair& pair,
                                        const BackupIndex& index, const std::vector<std::size_t>& entries) {
    // An update that was ended by force leaves two, and the record says which of them is its own.
    if (entries.size() > 1) {
        const auto container = vault_.platform.files.openShared(pair.file);
        const auto progress =
            vault_.platform.ui.openProgress(std::string(analysisStatus(AnalysisView::Text)));
        ByteProgress silent(*progress);
        for (auto number = entries.rbegin(); number != entries.rend(); ++number) {
            const BackupIndexEntry entry = index.entry(*number);
            crypto::Digester digester(context_.digest());
            const auto sink = [&](base::ByteView plain) { digester.update(plain); };
            if (extractBackupData(vault_, pair, *container, entry, silent, sink) == Extraction::Whole &&
                digester.finish() == record.digest)
                return entry;
        }
    }
    return index.entry(entries.back());
}

std::uint64_t FileAnalysis::size(Side side) const noexcept {
    const std::optional<PagedBytes>& bytes = side == Side::Now ? now_ : backup_;
    return bytes ? bytes->size() : 0;
}

std::uint64_t FileAnalysis::size() const noexcept {
    return std::max(size(Side::Now), size(Side::Backup));
}

std::uint64_t FileAnalysis::rowCount(Side side, AnalysisView view) const noexcept {
    return rowsOf(size(side), view);
}

std::uint64_t FileAnalysis::rowCount(AnalysisView view) const noexcept {
    return rowsOf(size(), view);
}

base::ByteView FileAnalysis::peek(Side side, AnalysisView view, std::uint64_t number) {
    std::optional<PagedBytes>& bytes = side == Side::Now ? now_ : backup_;
    if (number >= rowCount(side, view)) return {};
    return bytes->peek(number * rowWidth(view), rowWidth(view));
}

std::optional<AnalysisRow> FileAnalysis::row(Side side, AnalysisView view, std::uint64_t number) {
    const base::ByteView bytes = peek(side, view, number);
    if (bytes.empty()) return std::nullopt;
    return analysisRow(view, number, bytes);
}

std::optional<RowMark> FileAnalysis::mark(AnalysisView view, std::uint64_t number) {
    const base::ByteView now = peek(Side::Now, view, number);
    if (now.empty() || backupState_ != Backup::Found) return std::nullopt;
    const base::ByteView backup = peek(Side::Backup, view, number);
    if (backup.empty()) return RowMark::NoBackup;
    return areEqual(now, backup) ? RowMark::Equal : RowMark::Differs;
}

FileAnalysis::Walk FileAnalysis::forEachDifference(AnalysisView view, std::uint64_t first,
                                                   ByteProgress& progress, const Visitor& visit) {
    ContentBuffer nowBlock(platform::kBlockSize);
    ContentBuffer backupBlock(platform::kBlockSize);
    if (first >= rowCount(view)) return Walk::Whole;
    std::uint64_t position = first * rowWidth(view);
    progress.advance(position);
    while (position < size()) {
        if (progress.cancelled()) return Walk::Cancelled;
        const base::ByteView now = readBlock(now_, position, nowBlock);
        const base::ByteView backup = readBlock(backup_, position, backupBlock);
        if (!areEqual(now, backup) && !visitRows(view, position, now, backup, visit)) return Walk::Stopped;
        position += platform::kBlockSize;
        progress.advance(platform::kBlockSize);
    }
    return Walk::Whole;
}

FileAnalysis::Walk FileAnalysis::findDifferenceBefore(AnalysisView view, std::uint64_t before,
                                                      ByteProgress& progress, std::uint64_t& row) {
    ContentBuffer nowBlock(platform::kBlockSize);
    ContentBuffer backupBlock(platform::kBlockSize);
    const std::uint64_t end = std::min(before, rowCount(view)) * rowWidth(view);
    std::uint64_t blocks = end / platform::kBlockSize + (end % platform::kBlockSize != 0);
    bool isFound = false;
    const auto visit = [&](const DifferingRow& differing) {
        if (differing.number >= before) return false;
        row = differing.number;
        isFound = true;
        return true;
    };
    while (!isFound && blocks-- > 0) {
        if (progress.cancelled()) return Walk::Cancelled;
        const std::uint64_t position = blocks * platform::kBlockSize;
        const base::ByteView now = readBlock(now_, position, nowBlock);
        const base::ByteView backup = readBlock(backup_, position, backupBlock);
        if (!areEqual(now, backup)) visitRows(view, position, now, backup, visit);
        progress.advance(platform::kBlockSize);
    }
    return isFound ? Walk::Stopped : Walk::Whole;
}

}  // namespace corvalence::files
