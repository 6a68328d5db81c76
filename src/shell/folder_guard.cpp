#include "shell/folder_guard.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::shell {

namespace {

constexpr std::string_view kNoLists =
    "Your file system does not support permissions.\n\nA greater level of security can be acheived by using "
    "NTFS.";
constexpr std::string_view kUnascertained = "Unable to ascertain permissions.";
constexpr std::string_view kUnknown = "Unknown";
constexpr std::string_view kStateFile = "Permissions";
constexpr std::string_view kLineEnd = "\r\n";
constexpr crypto::UnsealVariant kUnsealState = {"MFRDN", crypto::EndRule::textTail()};

constexpr const components::PermissionColumn& kFullControl = components::kPermissionColumns.front();

// What an access list has in place of domains on Linux.
constexpr std::string_view kHandedDown = "default ";
constexpr std::string_view kOwner = "owner";
constexpr std::string_view kMask = "mask";
constexpr std::array<std::string_view, 6> kClasses = {kOwner, "user", "group", "named group", kMask, "other"};

struct Word {
    std::uint32_t rights;
    std::string_view text;
};
constexpr std::array<Word, 3> kModeWords = {
    {{0x1, "list"}, {0x2, "create, rename and remove"}, {0x20, "enter"}}};
constexpr std::array<Word, 3> kSpecialWords = {
    {{platform::access_right::kSetUserId, "set-user-ID"},
     {platform::access_right::kSetGroupId, "what is made in it gets its group (set-group-ID)"},
     {platform::access_right::kSticky, "only owners remove or rename what is theirs (sticky)"}}};

/// The class of a mode that stands in a domain's place, without the words in front; empty where it is none.
std::string_view modeClass(std::string_view domain) {
    if (domain.starts_with(kHandedDown)) domain.remove_prefix(kHandedDown.size());
    return std::find(kClasses.begin(), kClasses.end(), domain) == kClasses.end() ? std::string_view()
                                                                                 : domain;
}

bool isPartial(std::uint32_t rights) {
    return (rights & kFullControl.mask) != 0 && !kFullControl.ticks(rights);
}

/// A name as a line of the state can hold it.
std::string fieldOf(const platform::AccessEntry& entry, const std::string& name) {
    if (entry.state != platform::AccountState::Known) return std::string(kUnknown);
    constexpr std::string_view kBreaks("\r\n\0", 3);
    std::string field = name;
    std::replace_if(
        field.begin(), field.end(), [&](char c) { return kBreaks.find(c) != std::string_view::npos; }, ' ');
    return field;
}

GuardRow rowOf(const platform::AccessEntry& entry) {
    GuardRow row{fieldOf(entry, entry.account), fieldOf(entry, entry.domain), entry.rights};
    const std::string_view mode = modeClass(row.domain);
    // What a mode gives to these cannot be taken from them.
    const bool isBeyondModes = mode == kOwner || (!mode.empty() && entry.isAdministrators);
    row.isWeak = isPartial(entry.rights) && !isBeyondModes;
    return row;
}

FolderState stateOf(const std::optional<std::vector<platform::AccessEntry>>& list) {
    FolderState state;
    if (!list) {
        // Everybody may do everything, which no entry says, and which is weaker than any of them.
        state.rows.push_back({"Everybody", "no access list", kFullControl.mask, true});
        return state;
    }
    std::transform(list->begin(), list->end(), std::back_inserter(state.rows), rowOf);
    return state;
}

/// The rows of a stored text. False where a line is none, but for what its last block left behind.
bool parse(std::string_view text, std::vector<GuardRow>& rows) {
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t feed = rest.find('\n');
        const std::string_view line = rest.substr(0, feed == std::string_view::npos ? feed : feed + 1);
        const auto entry = components::parsePermissionEntry(base::withoutLineEnd(line));
        if (!entry || !line.ends_with('\n')) return base::isStaleTail(rest.size());
        rows.push_back({std::string(entry->account), std::string(entry->domain), entry->rights,
                        isPartial(entry->rights) && modeClass(entry->domain) != kOwner});
        rest.remove_prefix(line.size());
    }
    return true;
}

void append(std::string& text, std::string_view word) {
    text.append(text.empty() ? "" : ", ").append(word);
}

/// The folder of the installation by a path without links, held as long as this lives.
struct HeldFolder {
    std::unique_ptr<platform::PinnedFolder> pin;
    std::string path;
};

HeldFolder hold(const store::Vault& vault) {
    platform::Platform& system = vault.platform;
    std::string name = std::string(kStateFile) + "123456789z";  // which never leads elsewhere
    HeldFolder held;
    held.pin =
        system.access.pinFolderOf(vault.configuration.folder(settings::key::kInstallDirectory) + name, name);
    held.path = held.pin->resolvedPath();
    // A closing separator would lead through a link that takes the folder's place; a root has to keep it.
    if (system.volumes.rootOf(held.path) != held.path) held.path.pop_back();
    return held;
}

}  // namespace

std::string GuardRow::inWords() const {
    std::string words;
    const std::string_view mode = modeClass(domain);
    if (mode.empty()) {
        for (const std::string& name : components::rightNames(rights & ~kFullControl.mask))
            append(words, name);
        constexpr std::uint32_t kTakeOwnership = 0x8'0000;
        if ((rights & kTakeOwnership) != 0 && !kFullControl.ticks(rights))
            append(words, components::rightNames(kTakeOwnership).front());
        return words;
    }
    for (const Word& word : kModeWords)
        if ((rights & word.rights) != 0) append(words, word.text);
    if (words.empty()) words = "nothing";
    if (mode == kMask) words.insert(0, "all but owner and others at the most: ");
    if (domain.starts_with(kHandedDown)) words.insert(0, "of what is made in it: ");
    for (const Word& word : kSpecialWords)
        if ((rights & word.rights) != 0) words.append("; ").append(word.text);
    return words;
}

bool FolderState::isWeak() const {
    return std::any_of(rows.begin(), rows.end(), [](const GuardRow& row) { return row.isWeak; });
}

std::string FolderState::text() const {
    std::string text;
    for (const GuardRow& row : rows)
        text.append(row.account + "," + row.domain + "," + std::to_string(row.rights)).append(kLineEnd);
    return text;
}

std::string FolderGuard::stateFile() const {
    return vault_.configuration.folder(settings::key::kInstallDirectory).append(kStateFile);
}

std::optional<FolderState> FolderGuard::read() {
    platform::Platform& system = vault_.platform;
    try {
        const std::string folder = vault_.configuration.folder(settings::key::kInstallDirectory);
        if (!system.volumes.keepsAccessLists(system.volumes.rootOf(folder))) {
            system.ui.message(platform::Icon::Information, std::string(kNoLists));
            return std::nullopt;
        }
        return stateOf(lists_.read(hold(vault_).path));
    } catch (const base::FileFailure&) {
        system.ui.message(platform::Icon::Stop, std::string(kUnascertained));
        return std::nullopt;
    }
}

Strengthening FolderGuard::strengthen() {
    Strengthening done;
    try {
        const HeldFolder held = hold(vault_);
        done.removed = lists_.removeEntries(held.path, [](const platform::AccessEntry& entry) {
            return !entry.isAdministrators && !kFullControl.ticks(entry.rights);
        });
    } catch (const base::FileFailure& failure) {
        done.failure = base::reasonText(failure.cause());
    }
    return done;
}

void FolderGuard::accept(const FolderState& state) {
    crypto::sealFile(vault_.working, state.text(), stateFile(), vault_.session.key,
                     vault_.session.chains.LogIV);
}

bool FolderGuard::readStored(std::vector<GuardRow>& rows) const {
    try {
        const crypto::SecretText text =
            crypto::unsealText(vault_.platform.files, stateFile(), vault_.session.key,
                               vault_.session.chains.LogIV, kUnsealState);
        return parse(text.view(), rows);
    } catch (const base::FileFailure& failure) {
        if (failure.cause() != base::Cause::InvalidFile) throw;
        return false;  // no run of whole blocks
    }
}

GuardCheck FolderGuard::check() {
    GuardCheck check;
    auto now = read();
    if (!now) return check;
    check.now = std::move(*now);
    if (!vault_.platform.files.status(stateFile(), platform::Follow::Yes)) {
        check.result = GuardResult::NotStored;
        return check;
    }
    if (!readStored(check.before)) {
        check.result = GuardResult::Damaged;
    } else {
        const bool isSame = FolderState{check.before}.text() == check.now.text();
        check.result = isSame ? GuardResult::Same : GuardResult::Changed;
    }
    return check;
}

}  // namespace corvalence::shell
