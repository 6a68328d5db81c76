#pragma once

#include <curl/curl.h>

#include <array>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "platform/file_system.h"
#include "platform/linux/mail_login.h"
#include "platform/mail.h"

namespace corvalence::platform::linux_system {

template <auto kFree>
struct CurlFree {
    void operator()(auto* handle) const noexcept { kFree(handle); }
};

/// The sending of one message. The constructor throws std::runtime_error, or base::FileFailure, where message
/// or server are not fit to be tried.
class SmtpTransfer {
  public:
    SmtpTransfer(FileSystem& files, const MailMessage& message, const MailServer& server,
                 base::FileTime time);

    /// Runs until the server has accepted the message or has not. To be called once.
    MailResult run(std::stop_token stop);

  private:
    using List = std::unique_ptr<curl_slist, CurlFree<curl_slist_free_all>>;

    template <typename Value>
    void set(CURLoption option, Value value);
    void setServer(const MailServer& server);
    void setLogin(const MailServer& server);
    void setContent(FileSystem& files, const MailMessage& message);
    void addAttachment(const std::string& name);
    bool isStop(CURLcode code) const noexcept;
    MailResult outcomeOf(CURLcode code) const;
    static void append(List& list, const std::string& text);

    static int isToStop(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
    static std::size_t takeAnswer(char* text, std::size_t size, std::size_t count, void* transfer);
    static std::size_t giveAttachment(char* buffer, std::size_t size, std::size_t count, void* transfer);

    std::string host_;
    bool isUnderTls_ = false;  // or nothing is sent
    std::unique_ptr<File> attachment_;
    std::uint64_t attachmentLeft_ = 0;
    std::string attachmentFault_;
    std::string lastRefusal_;
    std::stop_token stop_;
    bool isMessageAwaited_ = false;
    bool isAccepted_ = false;
    std::array<char, CURL_ERROR_SIZE> error_{};
    // What the handle at the end uses stands before it, so that it goes after it.
    std::optional<MailLogin> login_;
    List headers_;
    List recipients_;
    std::unique_ptr<CURLM, CurlFree<curl_multi_cleanup>> multi_;
    std::unique_ptr<curl_mime, CurlFree<curl_mime_free>> mime_;
    std::unique_ptr<CURL, CurlFree<curl_easy_cleanup>> easy_;
};

}  // namespace corvalence::platform::linux_system
