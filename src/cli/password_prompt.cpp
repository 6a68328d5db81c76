#include "cli/password_prompt.h"

#include <filesystem>

namespace corvalence::cli {

namespace {

// No password within the limit has more bytes, as a UTF-8 character has four at the most.
constexpr std::size_t kByteLimit = core::kPasswordLimit * 4;

/// The next line byte for byte, without its line feed. Nothing where there is no line at all.
std::optional<crypto::SecretText> readLine(std::istream& in) {
    crypto::SecretText line;
    line.reserve(kByteLimit + 1);
    char byte = '\0';
    if (!in.get(byte)) return std::nullopt;
    for (; in && byte != '\n' && line.size() <= kByteLimit; in.get(byte))
        line.append(byte);
    crypto::secureZero(&byte, 1);
    return line;
}

/// False where a signal came meanwhile.
bool openUnbuffered(Context& context, const std::string& name, std::ifstream& file) {
    const std::string path = absolutePath(context, name);
    file.rdbuf()->pubsetbuf(nullptr, 0);  // no copy of the password in a buffer that nobody wipes
    file.open(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
    if (file) return true;
    if (context.platform.process.cancelRequested()) return false;
    throw CommandEnd(ExitCode::Failed, path + " could not be opened.");
}

}  // namespace

std::optional<crypto::SecretText> PasswordPrompt::show(const core::PasswordQuestion& question) {
    if (question.damaged) return std::nullopt;  // to reset is a command of its own
    const bool onTerminal = asksOnTerminal();
    const auto tell = [&](const std::string& text) {
        context_.platform.ui.message(platform::Icon::Stop, text);
    };
    if (question.again && !onTerminal) {
        tell("refused");
        return std::nullopt;
    }
    for (;;) {
        auto password = onTerminal ? ask(question.choosing) : readNextLine();
        if (!password) {
            if (!context_.platform.process.cancelRequested()) tell("no password was given");
            return std::nullopt;
        }
        const auto fault = core::findPasswordFault(password->view());
        if (!fault) {
            given_ = crypto::SecretText(password->view());
            return password;
        }
        tell(*fault);
        if (!onTerminal) return std::nullopt;
    }
}

bool PasswordPrompt::asksOnTerminal() {
    const auto& file = context_.options.passwordFile;
    return (!file || *file == "-") && context_.terminal.inputIsTerminal();
}

std::optional<crypto::SecretText> PasswordPrompt::ask(bool choosing) {
    if (!choosing) return readSecret("Password: ");
    for (;;) {
        auto password = readSecret("New password: ");
        if (!password) return std::nullopt;
        const auto repeated = readSecret("New password again: ");
        if (!repeated) return std::nullopt;
        if (password->view() == repeated->view()) return password;
        context_.platform.ui.message(platform::Icon::Warning, "The two entries differ.");
    }
}

std::optional<crypto::SecretText> PasswordPrompt::readSecret(const std::string& prompt) {
    auto line = context_.terminal.readSecret(prompt);
    if (!line) return std::nullopt;
    crypto::SecretText secret(*line);
    crypto::secureZero(line->data(), line->capacity());
    return secret;
}

std::optional<crypto::SecretText> PasswordPrompt::readNextLine() {
    const auto& name = context_.options.passwordFile;
    if (!name || *name == "-") return readLine(context_.in);
    if (!file_.is_open() && !openUnbuffered(context_, *name, file_)) return std::nullopt;
    return readLine(file_);
}

std::optional<crypto::SecretText> readPasswordFile(Context& context, const std::string& name) {
    if (name == "-") return readLine(context.in);
    std::ifstream file;
    return openUnbuffered(context, name, file) ? readLine(file) : std::nullopt;
}

}  // namespace corvalence::cli
