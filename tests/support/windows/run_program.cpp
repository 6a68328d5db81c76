#include "run_program.h"

#include <windows.h>

#include <system_error>

#include "platform/windows/wide.h"
#include "start_program.h"

namespace corvalence::test {

namespace {

/// An argument as the C library of the program takes it apart again.
std::wstring quoted(const std::string& text) {
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    const std::wstring wide = platform::windows_system::toWide(text).value();
    for (const wchar_t unit : wide) {
        if (unit == L'"') result.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        result.push_back(unit);
    }
    return result.append(backslashes, L'\\') + L"\"";
}

}  // namespace

platform::windows_system::Handle startProgram(const std::string& program,
                                              const std::vector<std::string>& arguments, HANDLE input,
                                              HANDLE output, HANDLE error) {
    std::wstring line = quoted(program);
    for (const std::string& argument : arguments)
        line += L" " + quoted(argument);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = input;
    start.hStdOutput = output;
    start.hStdError = error;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP, nullptr,
                          nullptr, &start, &process)) {
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), program);
    }
    ::CloseHandle(process.hThread);
    return platform::windows_system::Handle(process.hProcess);
}

int exitCodeOf(const platform::windows_system::Handle& process) {
    DWORD code = 0;
    ::WaitForSingleObject(process.get(), INFINITE);
    ::GetExitCodeProcess(process.get(), &code);
    return static_cast<int>(code);
}

int runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    return exitCodeOf(startProgram(program, arguments, ::GetStdHandle(STD_INPUT_HANDLE),
                                   ::GetStdHandle(STD_OUTPUT_HANDLE), ::GetStdHandle(STD_ERROR_HANDLE)));
}

}  // namespace corvalence::test
