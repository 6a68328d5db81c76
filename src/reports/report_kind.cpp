#include "reports/report_kind.h"

namespace corvalence::reports {

namespace {

constexpr std::string_view kFileColumns[] = {"File name", "Digest value", "Size [bytes]", "File type",
                                             "Location",  "Attributes",   "Modified",     "Created"};
constexpr std::string_view kDirectoryColumns[] = {"File name", "Location", "Status"};
constexpr std::string_view kPermissionColumns[] = {"File name",
                                                   "Location",
                                                   "Account",
                                                   "Domain",
                                                   "Full Control",
                                                   "Read",
                                                   "Write",
                                                   "Execute",
                                                   "List Folder",
                                                   "Traverse Folder",
                                                   "Create Files",
                                                   "Create Folders",
                                                   "Delete",
                                                   "Delete Subfolders/Files",
                                                   "Read Permissions",
                                                   "Change Permissions",
                                                   "Read Attributes",
                                                   "Change Attributes"};
constexpr std::string_view kRegistryColumns[] = {"Registry Key", "Registry Subkey", "Status",
                                                 "Data Type",    "Value",           "New Value"};
constexpr std::string_view kServiceColumns[] = {
    "Service Name", "Display Name", "Status",        "Current Status", "Service Type", "Controls Accepted",
    "Binary Path",  "Startup Type", "Error Control", "Logon As",       "Description"};

constexpr std::array<ReportRow, 5> kRows = {{
    {ReportKind::FileContents, "FileChk", 'F', "file-contents", "Corvalence - File Contents Report.",
     " does not appear to be a Corvalence File Contents Report",
     "There are no File Contents changes to report.", "The File Contents component was not checked.",
     kFileColumns},
    {ReportKind::DirectoryStructure, "DirChk", 'D', "directory-structure",
     "Corvalence - Directory Structure Report.",
     " does not appear to be a Corvalence Directory Structure Report",
     "There are no Directory Structure changes to report.",
     "The Directory Structure component was not checked.", kDirectoryColumns},
    {ReportKind::Permissions, "PermsChk", 'P', "permissions", "Corvalence - Permissions Report.",
     " does not appear to be a Corvalence Permissions Report", "There are no Permission changes to report.",
     "The Permissions component was not checked.", kPermissionColumns},
    {ReportKind::Registry, "RegChk", 'R', "registry", "Corvalence - Registry Report.",
     " does not appear to be a Corvalence Registry Report", "There are no Registry changes to report.",
     "The Registry component was not checked.", kRegistryColumns},
    {ReportKind::Services, "ServsChk", 'S', "services", "Corvalence - Services Report.",
     " does not appear to be a Corvalence Services Report", "There are no Service changes to report.",
     "The Services component was not checked.", kServiceColumns},
}};

}  // namespace

std::span<const ReportRow> reportRows() noexcept {
    return kRows;
}

const ReportRow& reportRow(ReportKind kind) noexcept {
    return kRows[static_cast<std::size_t>(kind)];
}

const ReportRow* findReportRow(char letter) noexcept {
    for (const ReportRow& row : kRows) {
        if (row.letter == letter) return &row;
    }
    return nullptr;
}

const ReportRow* findReportRow(std::string_view consoleName) noexcept {
    for (const ReportRow& row : kRows) {
        if (row.consoleName == consoleName) return &row;
    }
    return nullptr;
}

}  // namespace corvalence::reports
