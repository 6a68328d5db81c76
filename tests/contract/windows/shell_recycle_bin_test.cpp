#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <filesystem>

#include "platform/windows/shell_recycle_bin.h"
#include "platform/windows/wide.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

bool throwAway(const std::string& path) {
    std::wstring names = *platform::windows_system::toWide(path);
    names.push_back(L'\0');  // the list of names ends with an empty one
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = names.c_str();
    operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI;
    return ::SHFileOperationW(&operation) == 0 && operation.fAnyOperationsAborted == FALSE;
}

TEST(RecycleBin, listsWhatWasThrownAwayByItsOriginalPath) {
    platform::windows_system::ShellRecycleBin bin;
    SystemBackEnd system;
    // On the drive of the user's own folders: Wine throws no folder away from another.
    const TempFolder folder(std::filesystem::temp_directory_path().string());
    const auto before = bin.items();
    std::vector<std::string> paths = {folder / "a \xE4\xB8\x80.txt", folder.write("no ending", "x"),
                                      folder / "folder.d"};
    system.files.createNew(paths.front());
    folder.write("folder.d\\inside", "x");
    for (const std::string& path : paths)
        ASSERT_TRUE(throwAway(path)) << path;
    // Thrown away twice, a path stands there twice.
    paths.push_back(folder.write("no ending", "y"));
    ASSERT_TRUE(throwAway(paths.back()));
    std::sort(paths.begin(), paths.end());

    std::vector<std::string> listed;
    for (const auto& item : bin.items()) {
        if (std::find(before.begin(), before.end(), item) == before.end())
            listed.push_back(item.originalPath);
    }
    EXPECT_EQ(listed, paths);
}

}  // namespace
}  // namespace corvalence::test
