#include "settings/configuration_keys.h"

#include <algorithm>
#include <array>

namespace corvalence::settings {

namespace {

// Columns: name, console name, form, lowest and highest on reading, on entry, fall-back, letters, meaning.
constexpr std::array<ConfigurationKey, 41> kKeys = {{
    {"Config1", "backup-suffix", Form::Character, 0, 0, 0, 0, "~", "",
     "character put into a database's name to form the name of its backup database"},
    {"Config2", "backup-databases", Form::Number, 0, 1, 0, 1, "1", "",
     "1: every change of a database also writes its backup database"},
    {"Config3", "backup-database-folder", Form::Path, 0, 0, 0, 0, "", "",
     "folder for backup databases, used only when Config4 is 0"},
    {"Config4", "backup-beside-database", Form::Number, 0, 1, 0, 1, "1", "",
     "1: the backup database lies beside the database"},
    {"Config5", "backup-files", Form::Number, 0, 1, 0, 1, "1", "",
     "1: files that enter a database are backed up, so that they can be restored"},
    {"Config17", "encrypt-backups", Form::Letter, 0, 0, 0, 0, "N", "NP",
     "N: backups of files are stored sealed; P: plain"},
    {"Config6", "recent-count", Form::Number, 0, 10, 1, 10, "10", "", "length of the recent-database list"},
    {"Config7", "recent-list", Form::Number, 0, 1, 0, 1, "1", "", "1: a list of recent databases is kept"},
    {"Config8", "schedule-hours", Form::Number, 0, 24, 0, 24, "0", "", "hours of the check interval"},
    {"Config9", "schedule-minutes", Form::Number, 0, 59, 0, 59, "0", "", "minutes of the check interval"},
    {"Config10", "schedule-seconds", Form::Number, 0, 59, 0, 59, "0", "", "seconds of the check interval"},
    {"Config11", "schedule-reaction", Form::Letter, 0, 0, 0, 0, "N", "NP",
     "N: continuous checking with a log file; P: standard checking that asks"},
    {"Config12", "countdown-sound", Form::Number, 0, 1, 0, 1, "1", "",
     "0: a bleep during the last seconds of the countdown; 1: silent"},
    {"Config13", "warning-sound", Form::Number, 0, 4, 0, 4, "2", "",
     "sound at a difference: 0 calm, 1 warning, 2 alarm, 3 silent, 4 the file of Config14"},
    {"Config14", "warning-sound-file", Form::Path, 0, 0, 0, 0, "", "", "file played when Config13 is 4"},
    {"Config15", "page-size", Form::Number, 1000, 64999, 1000, 65000, "10000", "",
     "rows on one page of a list or report"},
    {"Config16", "info-bar-seconds", Form::Number, 1, 59, 1, 59, "5", "",
     "seconds between two refreshes of the memory and disk space bars"},
    {"Config20", "tray-progress", Form::Number, 0, 1, 0, 1, "1", "",
     "1: the tray icon shows the progress of a scheduled check"},
    {"Config21", "themed-progress", Form::Number, 0, 1, 0, 1, "0", "",
     "1: progress bars in the theme's style"},
    {"Config22", "tray-animation", Form::Number, 0, 1, 0, 1, "1", "",
     "1: the tray icon is animated during background checking"},
    {"Config23", "email", Form::Number, 0, 1, 0, 1, "0", "", "1: results of scheduled checks are mailed"},
    {"Config24", "email-only-changes", Form::Number, 0, 1, 0, 1, "0", "",
     "0: a mail after each scheduled check; 1: only when something changed"},
    {"Config25", "email-encrypted", Form::Number, 0, 1, 0, 1, "1", "",
     "0: the log as plain text; 1: as a sealed attachment"},
    {"Config26", "email-recipient", Form::Text, 0, 0, 0, 0, "", "", "recipient of the mails"},
    {"Config27", "email-timeout", Form::Number, 1, 30, 1, 30, "1", "",
     "minutes to wait for a mail to go out"},
    {"Mail Server", "mail-server", Form::Text, 0, 0, 0, 0, "", "",
     "server that takes the mails on Linux: smtp://HOST or smtps://HOST, with :PORT"},
    {"Mail TLS", "mail-tls", Form::Number, 0, 1, 0, 1, "1", "",
     "1: no mail to a server without TLS; 0: TLS only where the server offers it"},
    {"Mail Sender", "mail-sender", Form::Text, 0, 0, 0, 0, "", "", "address that the mails come from"},
    {"Mail Login", "mail-login", Form::Path, 0, 0, 0, 0, "", "",
     "file of mode 0600 with user and password of the mail server, one a line; empty: no login"},
    {"Mail Authorities", "mail-authorities", Form::Path, 0, 0, 0, 0, "", "",
     "file with the certificates (PEM) that vouch for the mail server; empty: the system's"},
    {"Config28", "auto-restore", Form::Number, 0, 1, 0, 1, "0", "",
     "1: a scheduled check restores changed files from their backups"},
    {"Config29", "auto-restore-moves", Form::Number, 0, 1, 0, 1, "1", "",
     "what becomes of a file so restored: 0 deleted, 1 moved to the folder of changed files"},
    {"Config32", "folder-icon", Form::Number, 0, 1, 0, 1, "1", "",
     "1: the data folders bear the program's icon"},
    {"Background Checking", "background-checking", Form::Letter, 0, 0, 0, 0, "N", "YN",
     "Y: background checking begins with the session"},
    {"Complete Walk", "complete-walk", Form::Number, 0, 1, 0, 1, "0", "",
     "1: walks pass over nothing, and checks of what they met compare whole lines to the end"},
    {"Walk Roots", "walk-roots", Form::Paths, 0, 0, 0, 0, "", "",
     "folders, one a line, that walks over the machine keep to; empty: every drive"},
    {"Install Directory", "data-root", Form::Path, 0, 0, 0, 0, "", "", "root of the data folders"},
    {"Backup\\Backup Files Directory", "backup-folder", Form::Path, 0, 0, 0, 0, "", "",
     "folder of the Database Index and of the backed-up files"},
    {"Backup\\Backup Database Index", "backup-counter", Form::Number, 0, 2147483646, 0, 2147483646, "0", "",
     "number of the database that was created last"},
    {"Changed Files Directory", "changed-folder", Form::Path, 0, 0, 0, 0, "", "",
     "folder that changed files are moved to when they are restored"},
    {"Checking Schedule Directory", "schedule-folder", Form::Path, 0, 0, 0, 0, "", "",
     "folder of the schedule and the log files"},
}};

bool equalLetters(std::string_view a, std::string_view b) noexcept {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace

std::span<const ConfigurationKey> configurationKeys() noexcept {
    return kKeys;
}

const ConfigurationKey* findConfigurationKey(std::string_view name) noexcept {
    for (const ConfigurationKey& row : kKeys) {
        if (equalLetters(row.name, name) || equalLetters(row.consoleName, name)) return &row;
    }
    return nullptr;
}

}  // namespace corvalence::settings
