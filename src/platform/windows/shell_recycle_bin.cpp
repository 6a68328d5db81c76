#include "platform/windows/shell_recycle_bin.h"

#include <windows.h>

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <tuple>

#include "base/file_failure.h"
#include "platform/windows/path_style.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

/// Columns of the bin's folder. Which of the last two holds the type differs between systems.
constexpr UINT kOriginalFolder = 1;
constexpr UINT kTypeColumns[] = {3, 4};

struct Release {
    template <typename Interface>
    void operator()(Interface* object) const noexcept {
        object->Release();
    }
};
template <typename Interface>
using Com = std::unique_ptr<Interface, Release>;

struct FreeTaskMemory {
    void operator()(void* memory) const noexcept { ::CoTaskMemFree(memory); }
};
template <typename Type>
using TaskMemory = std::unique_ptr<Type, FreeTaskMemory>;

/// The component library of this thread, as long as it lives.
class ComponentLibrary {
  public:
    ComponentLibrary() noexcept : result_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~ComponentLibrary() {
        // A thread that chose another model keeps it and has the library already.
        if (SUCCEEDED(result_)) ::CoUninitialize();
    }
    ComponentLibrary(const ComponentLibrary&) = delete;
    ComponentLibrary& operator=(const ComponentLibrary&) = delete;

  private:
    HRESULT result_;
};

void check(HRESULT result) {
    if (FAILED(result))
        throw base::FileFailure(base::Cause::Generic, static_cast<int>(result), "Recycle Bin");
}

std::wstring textOf(STRRET& text, LPCITEMIDLIST item) {
    wchar_t* copy = nullptr;
    if (FAILED(::StrRetToStrW(&text, item, &copy))) return {};
    return TaskMemory<wchar_t>(copy).get();
}

class BinFolder {
  public:
    BinFolder() {
        IShellFolder* desktop = nullptr;
        check(::SHGetDesktopFolder(&desktop));
        const Com<IShellFolder> owned(desktop);
        LPITEMIDLIST place = nullptr;
        check(::SHGetSpecialFolderLocation(nullptr, CSIDL_BITBUCKET, &place));
        const TaskMemory<ITEMIDLIST> ownedPlace(place);
        void* folder = nullptr;
        check(desktop->BindToObject(place, nullptr, IID_IShellFolder2, &folder));
        folder_.reset(static_cast<IShellFolder2*>(folder));
    }

    std::vector<RecycledItem> items() const {
        IEnumIDList* list = nullptr;
        check(folder_->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS | SHCONTF_INCLUDEHIDDEN,
                                   &list));
        std::vector<RecycledItem> items;
        if (list == nullptr) return items;  // an empty bin on some systems
        const Com<IEnumIDList> owned(list);
        LPITEMIDLIST id = nullptr;
        while (list->Next(1, &id, nullptr) == S_OK)
            items.push_back(tell(TaskMemory<ITEMIDLIST>(id).get()));
        return items;
    }

  private:
    std::wstring name(LPCITEMIDLIST item, SHGDNF form) const {
        STRRET text{};
        return FAILED(folder_->GetDisplayNameOf(item, form, &text)) ? std::wstring() : textOf(text, item);
    }

    std::wstring detail(LPCITEMIDLIST item, UINT column) const {
        SHELLDETAILS details{};
        return FAILED(folder_->GetDetailsOf(item, column, &details)) ? std::wstring()
                                                                     : textOf(details.str, item);
    }

    /// What the item is called in the bin's own folder keeps the ending that the shell may hide from users.
    static void addHiddenEnding(std::wstring& shown, std::wstring_view stored) {
        const std::size_t name = stored.find_last_of(L'\\') + 1;
        const std::size_t dot = stored.find_last_of(L'.');
        if (dot == std::wstring_view::npos || dot < name) return;
        const std::wstring_view ending = stored.substr(dot);
        const bool isThere = shown.size() >= ending.size() &&
                             kPaths.equal(toUtf8(shown.substr(shown.size() - ending.size())), toUtf8(ending));
        if (!isThere) shown += ending;
    }

    RecycledItem tell(LPCITEMIDLIST item) const {
        const std::wstring stored = name(item, SHGDN_FORPARSING);
        std::wstring shown = name(item, SHGDN_NORMAL);
        addHiddenEnding(shown, stored);
        RecycledItem told;
        const bool isWholePath = shown.size() > 1 && shown[1] == L':';
        told.originalPath =
            isWholePath ? toUtf8(shown) : kPaths.join(toUtf8(detail(item, kOriginalFolder)), toUtf8(shown));
        told.isFolder = isFolder(item, stored);
        return told;
    }

    bool isFolder(LPCITEMIDLIST item, const std::wstring& stored) const {
        const DWORD attributes = ::GetFileAttributesW(stored.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        return std::any_of(std::begin(kTypeColumns), std::end(kTypeColumns),
                           [&](UINT column) { return detail(item, column) == L"File Folder"; });
    }

    Com<IShellFolder2> folder_;
};

}  // namespace

std::vector<RecycledItem> ShellRecycleBin::items() {
    const ComponentLibrary library;
    std::vector<RecycledItem> items = BinFolder().items();
    std::sort(items.begin(), items.end(), [](const RecycledItem& a, const RecycledItem& b) {
        return std::tie(a.originalPath, a.isFolder) < std::tie(b.originalPath, b.isFolder);
    });
    return items;
}

}  // namespace corvalence::platform::windows_system
