#include "mail_server.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "run_program.h"

namespace corvalence::test {

namespace {

int serve(const TempFolder& folder, const std::vector<std::string>& options) {
    std::vector<std::string> texts = {"/usr/bin/python3", CORVALENCE_MAIL_SERVER, folder.path()};
    texts.insert(texts.end(), options.begin(), options.end());
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    ::execv(pointers.front(), pointers.data());
    return 1;
}

std::vector<std::string> withCertificate(const TempFolder& folder, std::vector<std::string> options) {
    if (std::find(options.begin(), options.end(), "--tls") == options.end()) return options;
    const int code = runProgram(
        "/bin/sh", {"-c",
                    "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
                    "-subj /CN=localhost -addext subjectAltName=DNS:localhost -keyout '" +
                        folder / "key.pem" + "' -out '" + folder / "cert.pem" + "' 2>/dev/null"});
    if (code != 0) throw std::runtime_error("openssl made no certificate.");
    return options;
}

}  // namespace

MailServerProcess::MailServerProcess(std::vector<std::string> options)
    : options_(withCertificate(folder_, std::move(options))),
      process_([this] { return serve(folder_, options_); }) {
    while (!folder_.has("port")) {
        if (!process_.isRunning()) throw std::runtime_error("The mail server did not start.");
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    port_ = folder_.read("port");
}

std::string partBytes(const nlohmann::json& mail, std::size_t part) {
    const std::string digits = mail["parts"][part]["bytes"];
    std::string bytes;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    return bytes;
}

}  // namespace corvalence::test
