#include "platform/linux/smtp_transfer.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string_view>

#include "platform/linux/mail_headers.h"

namespace corvalence::platform::linux_system {

namespace {

using Outcome = MailResult::Outcome;

/// A server that took the message but does not answer the farewell must not hold the program.
constexpr long kFarewellSeconds = 2;

struct CurlText {
    char* text = nullptr;
    CurlText() = default;
    CurlText(const CurlText&) = delete;
    CurlText& operator=(const CurlText&) = delete;
    ~CurlText() { ::curl_free(text); }
};

using Address = std::unique_ptr<CURLU, CurlFree<curl_url_cleanup>>;

bool hasPart(const Address& address, CURLUPart part) {
    CurlText value;
    return ::curl_url_get(address.get(), part, &value.text, 0) == CURLUE_OK;
}

std::string partOf(const Address& address, CURLUPart part) {
    CurlText value;
    return ::curl_url_get(address.get(), part, &value.text, 0) == CURLUE_OK ? value.text : std::string();
}

/// The server's address in its parts. What is wrong with one is told without it, as it may hold a password.
Address parseServer(const std::string& url) {
    Address address(::curl_url());
    if (!address) throw std::bad_alloc();
    const bool isUrl = ::curl_url_set(address.get(), CURLUPART_URL, url.c_str(), 0) == CURLUE_OK;
    const std::string scheme = partOf(address, CURLUPART_SCHEME);
    if (!isUrl || (scheme != "smtp" && scheme != "smtps") || hasPart(address, CURLUPART_QUERY) ||
        hasPart(address, CURLUPART_FRAGMENT)) {
        throw std::runtime_error(
            "The mail server has to be set as smtp://HOST or smtps://HOST, with :PORT where "
            "it is not the usual one.");
    }
    if (hasPart(address, CURLUPART_USER) || hasPart(address, CURLUPART_PASSWORD))
        throw std::runtime_error("A user or password does not belong in the mail server's address.");
    return address;
}

void requireAddress(const std::string& whose, const std::string& address) {
    if (const auto fault = findAddressFault(address)) throw std::runtime_error(whose + " " + *fault);
}

/// What a server says, for a person: no control characters, and not without end.
std::string printable(std::string_view text) {
    constexpr std::size_t kLimit = 300;
    std::string result(text.substr(0, kLimit));
    while (!result.empty() && static_cast<unsigned char>(result.back()) <= ' ')
        result.pop_back();
    std::replace_if(
        result.begin(), result.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return result;
}

}  // namespace

SmtpTransfer::SmtpTransfer(FileSystem& files, const MailMessage& message, const MailServer& server,
                           base::FileTime time)
    : multi_(::curl_multi_init()), easy_(::curl_easy_init()) {
    if (!multi_ || !easy_) throw std::bad_alloc();
    requireAddress("Sender:", server.sender);
    requireAddress("Recipient:", message.recipient);
    setServer(server);
    setLogin(server);
    append(recipients_, message.recipient);
    for (const std::string& header : mailHeaders(message, server.sender, time))
        append(headers_, header);
    set(CURLOPT_MAIL_FROM, server.sender.c_str());
    set(CURLOPT_MAIL_RCPT, recipients_.get());
    set(CURLOPT_HTTPHEADER, headers_.get());
    setContent(files, message);
    set(CURLOPT_HEADERFUNCTION, &takeAnswer);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_XFERINFOFUNCTION, &isToStop);
    set(CURLOPT_XFERINFODATA, this);
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_ERRORBUFFER, error_.data());
}

void SmtpTransfer::append(List& list, const std::string& text) {
    curl_slist* const longer = ::curl_slist_append(list.get(), text.c_str());
    if (longer == nullptr) throw std::bad_alloc();
    (void)list.release();
    list.reset(longer);
}

template <typename Value>
void SmtpTransfer::set(CURLoption option, Value value) {
    const CURLcode code = ::curl_easy_setopt(easy_.get(), option, value);
    if (code != CURLE_OK) throw std::runtime_error(std::string("Mail: ") + ::curl_easy_strerror(code));
}

void SmtpTransfer::setServer(const MailServer& server) {
    const Address address = parseServer(server.url);
    const std::string port = partOf(address, CURLUPART_PORT);
    host_ = partOf(address, CURLUPART_HOST) + (port.empty() ? "" : ":" + port);
    isUnderTls_ = server.requiresTls || partOf(address, CURLUPART_SCHEME) == "smtps";
    const auto limit = static_cast<long>(std::max<std::int64_t>(1, server.limit.count()));
    set(CURLOPT_URL, server.url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    set(CURLOPT_PROXY, "");
    set(CURLOPT_USE_SSL, static_cast<long>(server.requiresTls ? CURLUSESSL_ALL : CURLUSESSL_TRY));
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (!server.authoritiesFile.empty()) {
        set(CURLOPT_CAINFO, server.authoritiesFile.c_str());
        set<const char*>(CURLOPT_CAPATH, nullptr);
    }
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_TIMEOUT_MS, limit);
    set(CURLOPT_CONNECTTIMEOUT_MS, std::min(limit, 30'000L));
    set(CURLOPT_SERVER_RESPONSE_TIMEOUT, std::max(1L, limit / 1000));
    // The farewell is part of the transfer then, under a limit that takeAnswer() sets.
    set(CURLOPT_FORBID_REUSE, 1L);
    // A name that nobody resolves is not waited for in the end.
    set(CURLOPT_QUICK_EXIT, 1L);
}

void SmtpTransfer::setLogin(const MailServer& server) {
    if (server.loginFile.empty()) return;
    if (!isUnderTls_) throw std::runtime_error(host_ + ": A password is only sent where TLS is required.");
    login_.emplace(server.loginFile);
    set(CURLOPT_USERNAME, login_->user().c_str());
    set(CURLOPT_PASSWORD, login_->password().c_str());
}

void SmtpTransfer::setContent(FileSystem& files, const MailMessage& message) {
    mime_.reset(::curl_mime_init(easy_.get()));
    curl_mimepart* const body = mime_ ? ::curl_mime_addpart(mime_.get()) : nullptr;
    const std::string text = withMailLineEnds(message.body);
    if (body == nullptr || ::curl_mime_data(body, text.data(), text.size()) != CURLE_OK ||
        ::curl_mime_type(body, "text/plain; charset=utf-8") != CURLE_OK ||
        ::curl_mime_encoder(body, "quoted-printable") != CURLE_OK) {
        throw std::bad_alloc();
    }
    if (!message.attachmentPath.empty()) {
        attachment_ = files.openShared(message.attachmentPath);
        attachmentLeft_ = attachment_->size();
        addAttachment(message.attachmentName);
    }
    set(CURLOPT_MIMEPOST, mime_.get());
}

void SmtpTransfer::addAttachment(const std::string& name) {
    curl_mimepart* const part = ::curl_mime_addpart(mime_.get());
    List headers;
    append(headers, attachmentHeader(name));
    if (part == nullptr || ::curl_mime_type(part, "application/octet-stream") != CURLE_OK ||
        ::curl_mime_encoder(part, "base64") != CURLE_OK ||
        ::curl_mime_data_cb(part, static_cast<curl_off_t>(attachmentLeft_), &giveAttachment, nullptr, nullptr,
                            this) != CURLE_OK ||
        ::curl_mime_headers(part, headers.get(), 1) != CURLE_OK) {
        throw std::bad_alloc();
    }
    (void)headers.release();  // the part's own now
}

std::size_t SmtpTransfer::giveAttachment(char* buffer, std::size_t size, std::size_t count, void* transfer) {
    auto& self = *static_cast<SmtpTransfer*>(transfer);
    try {
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(size * count, self.attachmentLeft_));
        const std::size_t given = self.attachment_->read({reinterpret_cast<std::uint8_t*>(buffer), wanted});
        if (given < wanted) throw base::FileFailure(base::Cause::EndOfFile, 0, self.attachment_->path());
        self.attachmentLeft_ -= given;
        return given;
    } catch (const std::exception& fault) {
        self.attachmentFault_ = fault.what();
        return CURL_READFUNC_ABORT;
    }
}

/// Every line that the server says.
std::size_t SmtpTransfer::takeAnswer(char* text, std::size_t size, std::size_t count, void* transfer) {
    auto& self = *static_cast<SmtpTransfer*>(transfer);
    const std::string_view line(text, size * count);
    if (line.starts_with('4') || line.starts_with('5')) self.lastRefusal_ = printable(line);
    if (self.isMessageAwaited_ && line.starts_with("250 ")) {
        self.isAccepted_ = true;
        ::curl_easy_setopt(self.easy_.get(), CURLOPT_SERVER_RESPONSE_TIMEOUT, kFarewellSeconds);
    }
    if (line.starts_with("354")) self.isMessageAwaited_ = true;
    return line.size();
}

/// Asked all the while, also where the library waits for an answer by itself: then once a second.
int SmtpTransfer::isToStop(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<SmtpTransfer*>(transfer)->stop_.stop_requested() ? 1 : 0;
}

MailResult SmtpTransfer::run(std::stop_token stop) {
    stop_ = std::move(stop);
    const std::stop_callback wake(stop_, [this] { ::curl_multi_wakeup(multi_.get()); });
    CURLMcode state = ::curl_multi_add_handle(multi_.get(), easy_.get());
    // A transfer that is taken out while it runs would end the message and wait for the server's word on it:
    // it is let run into isToStop() instead.
    bool isStopped = false;
    for (int running = 1; state == CURLM_OK && running > 0 && !isStopped;) {
        isStopped = stop_.stop_requested();
        state = ::curl_multi_perform(multi_.get(), &running);
        if (state == CURLM_OK && running > 0 && !isStopped)
            state = ::curl_multi_poll(multi_.get(), nullptr, 0, 1000, nullptr);
    }
    MailResult result{Outcome::Cancelled, host_ + ": The sending was stopped."};
    if (state != CURLM_OK) result = {Outcome::Refused, host_ + ": " + ::curl_multi_strerror(state)};
    int left = 0;
    while (const CURLMsg* const message = ::curl_multi_info_read(multi_.get(), &left))
        if (message->msg == CURLMSG_DONE && !isStop(message->data.result))
            result = outcomeOf(message->data.result);
    ::curl_multi_remove_handle(multi_.get(), easy_.get());
    return isAccepted_ ? MailResult{} : result;
}

bool SmtpTransfer::isStop(CURLcode code) const noexcept {
    return code == CURLE_ABORTED_BY_CALLBACK && attachmentFault_.empty();
}

MailResult SmtpTransfer::outcomeOf(CURLcode code) const {
    if (code == CURLE_OK) return {};
    if (!attachmentFault_.empty()) return {Outcome::Refused, attachmentFault_};
    std::string cause = printable(error_.front() == '\0' ? ::curl_easy_strerror(code) : error_.data());
    if (!lastRefusal_.empty()) cause += ". The server said: " + lastRefusal_;
    return {Outcome::Refused, host_ + ": " + cause};
}

}  // namespace corvalence::platform::linux_system
