#include "core/clean_up.h"

#include <array>

#include "platform/file_copy.h"
#include "reports/report_writer.h"

namespace corvalence::core {

namespace {

constexpr std::array<std::string_view, 3> kWorkingNames = {"Scheduled Checking Log File~123456789z",
                                                           "Scheduled Checking Log File~123456789zm",
                                                           "Database Checking Schedule123456789z"};

void removeReports(const store::Vault& vault) {
    const std::string folder = vault.configuration.folder(settings::key::kInstallDirectory);
    for (const reports::ReportKind kind : reports::kRemovalOrder) {
        platform::removeQuietly(vault.platform.files, reports::reportPath(vault.configuration, kind));
        platform::removeQuietly(vault.platform.files,
                                folder + std::string(reports::reportRow(kind).fileName));
    }
}

void removeUnheld(platform::FileSystem& files, const std::string& path) {
    try {
        if (!files.status(path, platform::Follow::No)) return;
        files.openExclusive(path).reset();
        files.remove(path);
    } catch (const base::FileFailure&) {
        // Somebody works with it, or it is no file.
    }
}

}  // namespace

void cleanUp(const store::Vault& vault) {
    removeReports(vault);
    const std::string folder = vault.configuration.folder(settings::key::kScheduleDirectory);
    for (const std::string_view name : kWorkingNames)
        removeUnheld(vault.platform.files, folder + std::string(name));
}

}  // namespace corvalence::core
