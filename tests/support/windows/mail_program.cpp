#include <windows.h>

#include <mapi.h>

#include <fstream>
#include <string_view>

/// A mail program as a desktop has one: writes down what it is given in the file that the subject names.
/// Knows everybody but "nobody@b.org".
extern "C" __declspec(dllexport) ULONG WINAPI
    MAPISendMail(LHANDLE session, ULONG_PTR window, lpMapiMessage message, FLAGS flags, ULONG reserved) {
    if (std::string_view(message->lpRecips->lpszName) == "nobody@b.org") return MAPI_E_UNKNOWN_RECIPIENT;
    std::ofstream out(message->lpszSubject, std::ios::binary);
    out << "session " << session << " window " << window << " flags " << flags << ' ' << reserved << ' '
        << message->flFlags << '\n';
    out << "from " << message->lpOriginator->ulRecipClass << ' ' << message->lpOriginator->lpszName << '\n';
    for (ULONG i = 0; i < message->nRecipCount; ++i) {
        const MapiRecipDesc& recipient = message->lpRecips[i];
        out << "to " << recipient.ulRecipClass << ' ' << recipient.lpszName << ' ' << recipient.lpszAddress
            << '\n';
    }
    out << "files " << message->nFileCount << '\n';
    for (ULONG i = 0; i < message->nFileCount; ++i) {
        const MapiFileDesc& file = message->lpFiles[i];
        out << "at " << static_cast<int>(file.nPosition) << ' ' << file.lpszPathName << ' '
            << file.lpszFileName << '\n';
    }
    out << message->lpszNoteText;
    out.close();
    return out ? SUCCESS_SUCCESS : MAPI_E_FAILURE;
}
