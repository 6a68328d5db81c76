#include "files/content_test.h"

#include <algorithm>
#include <span>

namespace corvalence::files {

namespace {

/// What a system's programs are known by.
struct System {
    std::span<const std::string_view> extensions;  // in lower case; their capitals serve as well
    std::span<const std::string_view> networkNames;
    std::span<const std::string_view> folders;
    std::span<const std::string_view> cookieFiles;
};

constexpr std::string_view kWindowsExtensions[] = {"exe", "dll", "ocx", "sys", "msc"};
constexpr std::string_view kWindowsNetwork[] = {"wininet.dll", "WSOCK32.dll", "ws2_32.dll",
                                                "MSWSOCK.dll", "WS2THK.DLL",  "WINSOCK.DLL"};
// Behind the drive: the names as the system writes them.
constexpr std::string_view kWindowsFolders[] = {"WINDOWS", "WINNT"};
constexpr std::string_view kWindowsCookies[] = {"index.dat"};

// A program has no extension here; a library's may be followed by its version.
constexpr std::string_view kLinuxExtensions[] = {"", "so", "ko"};
constexpr std::string_view kLinuxNetwork[] = {"getaddrinfo", "libssl.so",    "libcurl.so",
                                              "libsoup-",    "libdbus-1.so", "libzmq.so"};
constexpr std::string_view kLinuxFolders[] = {"/bin/",       "/sbin/",       "/lib/",      "/lib64/",
                                              "/boot/",      "/usr/bin/",    "/usr/sbin/", "/usr/lib/",
                                              "/usr/lib64/", "/usr/libexec/"};
constexpr std::string_view kLinuxCookies[] = {"cookies.sqlite", "Cookies"};

constexpr System kWindows = {kWindowsExtensions, kWindowsNetwork, kWindowsFolders, kWindowsCookies};
constexpr System kLinux = {kLinuxExtensions, kLinuxNetwork, kLinuxFolders, kLinuxCookies};

const System& systemOf(const base::PathRules& paths) noexcept {
    return paths.separator == '\\' ? kWindows : kLinux;
}

bool contains(std::span<const std::string_view> list, std::string_view text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

}  // namespace

ContentTest::ContentTest(const Criteria& criteria, const base::PathRules& paths)
    : abilities_(criteria.abilities), paths_(paths) {
    if (criteria.contents && criteria.contents->text != "*") {
        const ContentsCriterion& wanted = *criteria.contents;
        contents_.emplace(std::vector{wanted.text},
                          TextSearch::Rules{wanted.matchCase, wanted.wholeWord, wanted.textOnly});
    }
    if (abilities_ && abilities_->network) {
        const auto names = systemOf(paths).networkNames;
        network_.emplace(std::vector<std::string>(names.begin(), names.end()), TextSearch::Rules{});
    }
}

ContentTest::Result ContentTest::test(const std::string& path, platform::FileSystem& files,
                                      platform::Progress& progress) {
    if (contents_) {
        const auto found = contents_->search(*files.openShared(path), progress);
        if (found == TextSearch::Result::Cancelled) return Result::Cancelled;
        if (found == TextSearch::Result::NotFound) return Result::Fails;
    }
    return abilities_ ? testAbilities(path, files, progress) : Result::Passes;
}

ContentTest::Result ContentTest::testAbilities(const std::string& path, platform::FileSystem& files,
                                               platform::Progress& progress) {
    if (abilities_->cookies && isCookieIndex(path)) return Result::Passes;
    if (!isProgram(path)) return Result::Fails;
    if (abilities_->system && isOfTheSystem(path)) return Result::Passes;
    if (!network_) return Result::Fails;
    switch (network_->search(*files.openShared(path), progress)) {
        case TextSearch::Result::Found:
            return Result::Passes;
        case TextSearch::Result::NotFound:
            return Result::Fails;
        case TextSearch::Result::Cancelled:
            break;
    }
    return Result::Cancelled;
}

bool ContentTest::isProgram(const std::string& path) const {
    const auto extensions = systemOf(paths_).extensions;
    const bool isOne = std::any_of(extensions.begin(), extensions.end(), [&](std::string_view extension) {
        return passes(TypeCriterion{std::string(extension)}, path, paths_);
    });
    return isOne || (paths_.separator == '/' && paths_.fileName(path).find(".so.") != std::string_view::npos);
}

bool ContentTest::isOfTheSystem(const std::string& path) const {
    std::string_view rest = path;
    if (paths_.separator == '\\') {
        constexpr std::size_t kColonAndSeparator = 2;
        const std::size_t colon = path.find(':');
        if (colon == std::string::npos || colon + kColonAndSeparator > path.size()) return false;
        rest.remove_prefix(colon + kColonAndSeparator);
    }
    const auto folders = systemOf(paths_).folders;
    return std::any_of(folders.begin(), folders.end(),
                       [&](std::string_view folder) { return rest.starts_with(folder); });
}

bool ContentTest::isCookieIndex(const std::string& path) const {
    return contains(systemOf(paths_).cookieFiles, paths_.fileName(path));
}

}  // namespace corvalence::files
