#include "platform/windows/windows_terminal.h"

#include <array>

#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

bool isConsole(DWORD standard) {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(standard), &mode) != FALSE;
}

/// Whole lines, with or without echo, while this lives, if that could be had.
class LineInput {
  public:
    LineInput(HANDLE input, bool echo) : input_(input) {
        if (!::GetConsoleMode(input_, &before_)) return;
        const DWORD lines = before_ | ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT;
        const DWORD wanted = echo ? lines | ENABLE_ECHO_INPUT : lines & ~DWORD{ENABLE_ECHO_INPUT};
        changed_ = ::SetConsoleMode(input_, wanted) != FALSE;
        DWORD now = 0;
        isAsWanted_ = changed_ && ::GetConsoleMode(input_, &now) && ((now & ENABLE_ECHO_INPUT) != 0) == echo;
        if (!echo) ::FlushConsoleInputBuffer(input_);
    }
    ~LineInput() {
        if (changed_) ::SetConsoleMode(input_, before_);
    }
    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;

    bool isAsWanted() const noexcept { return isAsWanted_; }

  private:
    HANDLE input_;
    DWORD before_ = 0;
    bool changed_ = false;
    bool isAsWanted_ = false;
};

void show(const std::string& text) {
    const std::wstring wide = toWide(text).value_or(L"");
    DWORD count = 0;
    // A prompt that nobody can see asks nothing of its caller.
    ::WriteConsoleW(::GetStdHandle(STD_ERROR_HANDLE), wide.data(), static_cast<DWORD>(wide.size()), &count,
                    nullptr);
}

/// The characters of a line while it is read, wiped at the end.
struct LineBuffer {
    static constexpr DWORD kLimit = 4097;  // with carriage return and line feed
    std::array<wchar_t, kLimit> characters{};
    DWORD count = 0;

    LineBuffer() = default;
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;
    ~LineBuffer() { ::SecureZeroMemory(characters.data(), sizeof(characters)); }
};

}  // namespace

bool WindowsTerminal::isInteractive() {
    return isConsole(STD_INPUT_HANDLE) && isConsole(STD_ERROR_HANDLE);
}
bool WindowsTerminal::inputIsTerminal() {
    return isConsole(STD_INPUT_HANDLE);
}
bool WindowsTerminal::outputIsTerminal() {
    return isConsole(STD_OUTPUT_HANDLE);
}
bool WindowsTerminal::errorIsTerminal() {
    return isConsole(STD_ERROR_HANDLE);
}

std::optional<std::string> WindowsTerminal::read(bool echo, const std::string& prompt) {
    const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
    if (process_.cancelRequested()) return std::nullopt;
    const LineInput mode(input, echo);
    if (!mode.isAsWanted()) return std::nullopt;
    show(prompt);
    LineBuffer line;
    // Ctrl-C ends the call with no characters; its event is told to the process on another thread.
    const BOOL isRead =
        ::ReadConsoleW(input, line.characters.data(), LineBuffer::kLimit, &line.count, nullptr);
    if (!echo) show("\n");
    if (!isRead || line.count == 0 || process_.cancelRequested()) return std::nullopt;
    std::wstring_view text(line.characters.data(), line.count);
    constexpr wchar_t kEndOfInput = L'\x1A';
    if (text.front() == kEndOfInput) return std::nullopt;
    const std::size_t end = text.find_first_of(L"\r\n");
    if (end == std::wstring_view::npos) {
        ::FlushConsoleInputBuffer(input);
        return std::nullopt;
    }
    return toUtf8(text.substr(0, end));
}

std::optional<std::string> WindowsTerminal::readSecret(const std::string& prompt) {
    return read(false, prompt);
}
std::optional<std::string> WindowsTerminal::readLine(const std::string& prompt) {
    return read(true, prompt);
}

}  // namespace corvalence::platform::windows_system
