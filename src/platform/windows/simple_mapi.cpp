#include "platform/windows/simple_mapi.h"

#include <windows.h>

#include <mapi.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

using Outcome = MailResult::Outcome;

struct FreeModule {
    using pointer = HMODULE;
    void operator()(HMODULE module) const noexcept { ::FreeLibrary(module); }
};
using Library = std::unique_ptr<HMODULE, FreeModule>;

struct RefusalRow {
    ULONG code;
    const char* reason;
};

constexpr std::array kRefusals = {
    RefusalRow{MAPI_E_USER_ABORT, "Somebody at the machine declined it."},
    RefusalRow{MAPI_E_LOGON_FAILURE, "Nobody is logged on to it."},
    RefusalRow{MAPI_E_DISK_FULL, "The disk is full."},
    RefusalRow{MAPI_E_ACCESS_DENIED, "Access is denied."},
    RefusalRow{MAPI_E_ATTACHMENT_NOT_FOUND, "The attachment is not there."},
    RefusalRow{MAPI_E_ATTACHMENT_OPEN_FAILURE, "The attachment could not be opened."},
    RefusalRow{MAPI_E_UNKNOWN_RECIPIENT, "It does not know the recipient."},
    RefusalRow{MAPI_E_TEXT_TOO_LARGE, "The text is too long."},
    RefusalRow{MAPI_E_AMBIGUOUS_RECIPIENT, "The recipient is ambiguous."},
    RefusalRow{MAPI_E_NETWORK_FAILURE, "The network failed."},
    RefusalRow{MAPI_E_INVALID_RECIPS, "The recipient is not valid."},
};

MailResult refusal(ULONG code) {
    const auto row = std::find_if(kRefusals.begin(), kRefusals.end(),
                                  [code](const RefusalRow& each) { return each.code == code; });
    const std::string reason = row == kRefusals.end() ? "Error " + std::to_string(code) + "." : row->reason;
    return {Outcome::Refused, "The mail program did not take the message. " + reason};
}

struct CodePageText {
    std::string text;
    bool isExact = true;
};

CodePageText inCodePage(const std::wstring& wide) {
    CodePageText result;
    const auto length = static_cast<int>(wide.size());
    if (length == 0) return result;
    const int needed = ::WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    result.text.resize(static_cast<std::size_t>(needed));
    BOOL hasLoss = FALSE;
    ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), length, result.text.data(), needed,
                          nullptr, &hasLoss);
    result.isExact = hasLoss == FALSE;
    return result;
}

/// Bytes that are no UTF-8 go out as they are.
std::string messageText(const std::string& text) {
    const auto wide = toWide(text);
    return wide ? inCodePage(*wide).text : text;
}

/// The path in a form that the code page can hold; empty where there is none.
std::optional<std::string> attachmentPath(const std::string& path) {
    const auto wide = toWide(path);
    if (!wide) return std::nullopt;
    CodePageText plain = inCodePage(*wide);
    if (plain.isExact) return plain.text;
    std::wstring brief(MAX_PATH, L'\0');
    const DWORD length = ::GetShortPathNameW(wide->c_str(), brief.data(), static_cast<DWORD>(brief.size()));
    if (length == 0 || length >= brief.size()) return std::nullopt;
    brief.resize(length);
    plain = inCodePage(brief);
    return plain.isExact ? std::optional(plain.text) : std::nullopt;
}

std::wstring systemLibrary() {
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(::GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size())));
    return folder + L"\\MAPI32.DLL";
}

}  // namespace

SimpleMapi::SimpleMapi() : library_(systemLibrary()) {}

SimpleMapi::SimpleMapi(const std::string& library) : library_(systemPath(library)) {}

MailResult SimpleMapi::send(const MailMessage& message, const MailServer&, std::stop_token) {
    if (const auto fault = findAddressFault(message.recipient)) return {Outcome::Refused, *fault};
    const Library library(::LoadLibraryExW(library_.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (library == nullptr) return {Outcome::NoTransport, "This machine has no MAPI32.DLL."};
    const auto sendMail = reinterpret_cast<LPMAPISENDMAIL>(
        reinterpret_cast<void*>(::GetProcAddress(library.get(), "MAPISendMail")));
    if (sendMail == nullptr) return {Outcome::NoTransport, "This machine's MAPI32.DLL cannot send mail."};

    std::string subject = messageText(message.subject);
    std::string body = messageText(message.body);
    std::string name = messageText(message.recipient);
    std::string address = "SMTP:" + name;
    std::string sender = "Corvalence";
    MapiRecipDesc originator{0, MAPI_ORIG, sender.data(), nullptr, 0, nullptr};
    MapiRecipDesc recipient{0, MAPI_TO, name.data(), address.data(), 0, nullptr};
    MapiMessage mail{};
    mail.lpszSubject = subject.data();
    mail.lpszNoteText = body.data();
    mail.lpOriginator = &originator;
    mail.nRecipCount = 1;
    mail.lpRecips = &recipient;

    constexpr ULONG kNowhereInTheText = 0xFFFF'FFFF;
    auto path = attachmentPath(message.attachmentPath);
    if (!path)
        return {Outcome::Refused,
                "The attachment's path has characters that the mail program cannot be given."};
    std::string shownName = messageText(message.attachmentName);
    MapiFileDesc file{0, 0, kNowhereInTheText, path->data(), shownName.data(), nullptr};
    if (!path->empty()) {
        mail.nFileCount = 1;
        mail.lpFiles = &file;
    }
    const ULONG result = sendMail(0, 0, &mail, 0, 0);
    return result == SUCCESS_SUCCESS ? MailResult{} : refusal(result);
}

}  // namespace corvalence::platform::windows_system
