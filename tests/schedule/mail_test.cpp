#include <gtest/gtest.h>

#include <condition_variable>
#include <filesystem>
#include <mutex>

#include "crypto/sealed_file.h"
#include "schedule/mail_message.h"
#include "scripted_mail.h"
#include "world.h"

namespace corvalence::test {
namespace {

using namespace std::chrono_literals;
using platform::MailResult;
using schedule::MailPlan;
using schedule::MailThread;
using Outcome = MailResult::Outcome;
namespace key = settings::key;

/// Who waits, and what happens when the thread asks for the first time.
class Waiting : public schedule::MailWaiting {
  public:
    std::function<bool()> atFirst = [] { return true; };
    int asked = 0;
    bool goOn() override { return ++asked > 1 || atFirst(); }
};

/// Stays raised. Latches and waits on an atomic can sleep through their wake-up in the library of the Windows
/// build, which has no futex.
class Event {
  public:
    void raise() {
        const std::lock_guard lock(mutex_);
        isRaised_ = true;
        changed_.notify_all();
    }
    void wait() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return isRaised_; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isRaised_ = false;
};

class CheckMail : public testing::Test {
  protected:
    CheckMail() {
        world_.start();
        world_.set(key::kEmailRecipient, "admin@example.org");
        world_.set(key::kEmailTimeout, "1");
        // The clock is one that only waiting moves: the mail has to be there first.
        waiting_.atFirst = [this] {
            arrived_.wait();
            return true;
        };
        mail_->answer = [this](std::stop_token) {
            atArrival_();
            arrived_.raise();
            return MailResult{};
        };
    }

    MailResult send(MailPlan form, std::string_view text) {
        MailThread thread(mail_);
        return schedule::mailCheck(world_.vault(), thread, form, text, waiting_);
    }
    std::chrono::milliseconds now() { return world_.machine.clock.elapsed(); }

    World world_;
    std::shared_ptr<ScriptedMail> mail_ = std::make_shared<ScriptedMail>();
    std::function<void()> atArrival_ = [] {};
    Event arrived_;
    Waiting waiting_;
};

TEST_F(CheckMail, plainTextIsTheBodyUpToItsLimit) {
    EXPECT_EQ(send(MailPlan::Plain, "one\ntwo\n").outcome, Outcome::Accepted);
    EXPECT_EQ(mail_->message->body, "one\ntwo\n");
    EXPECT_EQ(mail_->message->recipient, "admin@example.org");
    EXPECT_EQ(mail_->message->subject, "Corvalence Checking Log");
    EXPECT_EQ(mail_->message->attachmentPath, "");

    const std::string text(999'999, 'x');
    EXPECT_EQ(schedule::plainMail(world_.configuration(), text.substr(1)).body, text.substr(1));
    EXPECT_EQ(
        schedule::plainMail(world_.configuration(), text).body,
        "The log file is larger than 1MB - It is recommended that you check the master log.\n\nIf you need "
        "to "
        "send log files larger than 1MB change the configuration so the log file is sent as an encrypted "
        "attachment.");
}

TEST_F(CheckMail, sealedTextIsAnAttachmentThatGoesWithTheWait) {
    const std::string text = "a secret line\n" + std::string(1'200'000, 's') + "\n";
    std::string name;
    std::string unsealed;
    std::string sealed;
    std::vector<std::string> temporaries;
    atArrival_ = [&] {
        name = fsPath(mail_->message->attachmentPath).filename().string();
        unsealed = crypto::unsealText(world_.machine.system.files, mail_->message->attachmentPath,
                                      world_.vault().session.key, world_.vault().session.chains.LogIV,
                                      crypto::kUnsealSchedule)
                       .view();
        temporaries = world_.leftovers("a secret line");
        sealed = readWholeFile(mail_->message->attachmentPath);
    };
    EXPECT_EQ(send(MailPlan::Sealed, text).outcome, Outcome::Accepted);
    EXPECT_EQ(unsealed, text);
    EXPECT_EQ(name, "Scheduled Checking Log File~123456789zmn");
    EXPECT_EQ(temporaries.size(), 1U);
    EXPECT_EQ(sealed.find("secret"), std::string::npos);
    EXPECT_EQ(mail_->message->body, "Corvalence Checking Log Attached.");
    EXPECT_EQ(mail_->message->attachmentName, "Corvalence Checking Log");
    EXPECT_FALSE(std::filesystem::exists(fsPath(mail_->message->attachmentPath)));
    // A later mail finds the name free again.
    EXPECT_EQ(send(MailPlan::Sealed, "").outcome, Outcome::Accepted);
}

TEST_F(CheckMail, anAttachmentThatCannotBeMadeIsToldAndEndsNothing) {
    world_.set(key::kScheduleDirectory, world_.data("none"));
    const auto result = send(MailPlan::Sealed, "x");
    EXPECT_EQ(result.outcome, Outcome::Refused);
    EXPECT_NE(result.reason.find("zmn"), std::string::npos) << result.reason;
    EXPECT_FALSE(mail_->message);
}

TEST_F(CheckMail, isWaitedForAsLongAsTheSettingsSay) {
    for (const auto& [setting, minutes] :
         {std::pair{"1", 1}, {"30", 30}, {"31", 1}, {"0", 1}, {"-2", 1}, {"", 1}}) {
        world_.set(key::kEmailTimeout, setting);
        const auto begin = now();
        EXPECT_EQ(send(MailPlan::Plain, "x").outcome, Outcome::Accepted);
        EXPECT_EQ(now() - begin, std::chrono::minutes(minutes)) << setting;
        EXPECT_EQ(mail_->server.limit, std::chrono::minutes(minutes));
    }
    EXPECT_GT(waiting_.asked, 20 * 60);
}

TEST_F(CheckMail, isLeftWhenTheWaitIsEndedFromOutside) {
    bool wasStopped = false;
    mail_->answer = [&](std::stop_token stop) {
        arrived_.raise();
        while (!stop.stop_requested())
            std::this_thread::sleep_for(1ms);
        wasStopped = true;
        return MailResult{Outcome::Cancelled, "stopped"};
    };
    EXPECT_EQ(send(MailPlan::Plain, "x").outcome, Outcome::Refused);  // at the end of its time
    EXPECT_TRUE(std::exchange(wasStopped, false));
    const auto begin = now();
    waiting_.asked = 0;
    waiting_.atFirst = [] { return false; };
    EXPECT_EQ(send(MailPlan::Plain, "x").outcome, Outcome::Cancelled);
    EXPECT_TRUE(wasStopped);
    EXPECT_EQ(now(), begin);
}

TEST_F(CheckMail, oneThatNeverComesBackHoldsNobodyAndKeepsOthersFromBeingSent) {
    const auto release = std::make_shared<Event>();
    const auto released = std::make_shared<Event>();
    mail_->answer = [this, release, released](std::stop_token) {
        arrived_.raise();
        release->wait();
        released->raise();
        return MailResult{};
    };
    MailThread thread(mail_);
    const auto sendOne = [&] {
        return thread.sendAndWait({}, {}, MailThread::Until::MailIsDone, world_.machine.clock, waiting_);
    };
    EXPECT_EQ(sendOne().reason, "The mail was not taken in the time that it may take.");
    EXPECT_EQ(sendOne().reason, "The mail before this one is still under way.");
    release->raise();
    released->wait();
    mail_->answer = [](std::stop_token) -> MailResult { throw std::runtime_error("broken"); };
    MailResult result;
    do
        result = sendOne();
    while (result.reason == "The mail before this one is still under way.");
    EXPECT_EQ(result.reason, "broken");
}

}  // namespace
}  // namespace corvalence::test
