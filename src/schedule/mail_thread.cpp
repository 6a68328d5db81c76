#include "schedule/mail_thread.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace corvalence::schedule {

using Outcome = platform::MailResult::Outcome;
using namespace std::chrono_literals;

namespace {

constexpr auto kStep = 50ms;
/// In which a sending that is told to stop comes back.
constexpr auto kGrace = 3s;

}  // namespace

/// Shared by the thread and who waits for it; the last of them lets it go.
struct MailThread::Job {
    Job(std::shared_ptr<platform::Mail> by, platform::MailMessage what, platform::MailServer where)
        : mail(std::move(by)), message(std::move(what)), server(std::move(where)) {}

    const std::shared_ptr<platform::Mail> mail;
    const platform::MailMessage message;
    const platform::MailServer server;
    std::stop_source stop;

    std::mutex mutex;
    std::condition_variable ended;
    std::optional<platform::MailResult> result;

    void run() noexcept {
        platform::MailResult outcome;
        try {
            outcome = mail->send(message, server, stop.get_token());
        } catch (const std::exception& fault) {
            outcome = {Outcome::Refused, fault.what()};
        }
        const std::lock_guard lock(mutex);
        result = std::move(outcome);
        ended.notify_all();
    }
    bool isDone() {
        const std::lock_guard lock(mutex);
        return result.has_value();
    }
    bool waitForEnd(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex);
        return ended.wait_for(lock, time, [this] { return result.has_value(); });
    }
};

MailThread::~MailThread() {
    end();
}

bool MailThread::isUnderWay() const {
    return job_ && !job_->isDone();
}

void MailThread::end() noexcept {
    if (!thread_.joinable()) return;
    if (isUnderWay()) {
        job_->stop.request_stop();
        job_->waitForEnd(kGrace);
    }
    isUnderWay() ? thread_.detach() : thread_.join();
}

platform::MailResult MailThread::sendAndWait(platform::MailMessage message, platform::MailServer server,
                                             Until until, platform::Clock& clock, MailWaiting& waiting) {
    if (isUnderWay()) return {Outcome::Refused, "The mail before this one is still under way."};
    const std::chrono::milliseconds limit = server.limit;
    job_ = std::make_shared<Job>(mail_, std::move(message), std::move(server));
    try {
        thread_ = std::thread([job = job_] { job->run(); });
    } catch (const std::exception& fault) {
        job_.reset();
        return {Outcome::NoTransport, fault.what()};
    }
    const auto start = clock.elapsed();
    bool goesOn = true;
    for (auto left = limit; goesOn && left > 0ms && !(until == Until::MailIsDone && job_->isDone());
         left = limit - (clock.elapsed() - start)) {
        goesOn = waiting.goOn();
        if (goesOn) clock.sleep(std::min<std::chrono::milliseconds>(kStep, left));
    }
    const bool isLate = goesOn && isUnderWay();
    end();
    const auto outcome = isUnderWay() ? Outcome::Cancelled : job_->result->outcome;
    if (outcome != Outcome::Cancelled) return std::move(*std::exchange(job_, nullptr)->result);
    if (!isUnderWay()) job_.reset();  // with its copy of the text
    return isLate ? platform::MailResult{Outcome::Refused,
                                         "The mail was not taken in the time that it may take."}
                  : platform::MailResult{Outcome::Cancelled, "The mail was not waited for any longer."};
}

}  // namespace corvalence::schedule
