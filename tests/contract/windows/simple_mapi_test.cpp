#include <gtest/gtest.h>
#include <windows.h>

#include "platform/windows/simple_mapi.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using Outcome = platform::MailResult::Outcome;

/// The folder that this program lies in, where the build puts the mail program that stands in for a real one.
std::string libraryPath() {
    std::string path(1000, '\0');
    path.resize(::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.rfind('\\') + 1) + "mail_program.dll";
}

/// Mail through a library that writes down what it is given, in the file that the subject names.
class SimpleMail : public testing::Test {
  protected:
    TempFolder folder_;
    platform::windows_system::SimpleMapi mail_{libraryPath()};
};

TEST_F(SimpleMail, handsOverEveryField) {
    const std::string subject = folder_ / "out";
    const auto plain = mail_.send({"somebody@example.org", subject, "two\r\nlines", "", ""}, {}, {});
    EXPECT_EQ(plain.outcome, Outcome::Accepted) << plain.reason;
    EXPECT_EQ(folder_.read("out"),
              "session 0 window 0 flags 0 0 0\nfrom 0 Corvalence\n"
              "to 1 somebody@example.org SMTP:somebody@example.org\nfiles 0\ntwo\r\nlines");

    const std::string file = folder_.write("log", "x");
    EXPECT_EQ(mail_.send({"a@b.org", subject, "", file, "The Log"}, {}, {}).outcome, Outcome::Accepted);
    EXPECT_EQ(folder_.read("out"),
              "session 0 window 0 flags 0 0 0\nfrom 0 Corvalence\nto 1 a@b.org SMTP:a@b.org\nfiles 1\n"
              "at -1 " +
                  file + " The Log\n");
}

TEST_F(SimpleMail, tellsWhyItWasNotSent) {
    const auto refused = mail_.send({"nobody@b.org", folder_ / "out", "", "", ""}, {}, {});
    EXPECT_EQ(refused.outcome, Outcome::Refused);
    EXPECT_EQ(refused.reason, "The mail program did not take the message. It does not know the recipient.");
    EXPECT_EQ(mail_.send({"a@b.org", folder_ / "none\\out", "", "", ""}, {}, {}).reason,
              "The mail program did not take the message. Error 2.");

    EXPECT_EQ(mail_.send({"a@b.org\nBcc: c@d.org", folder_ / "out", "", "", ""}, {}, {}).reason,
              "\"a@b.org?Bcc: c@d.org\" is not one mail address.");

    platform::windows_system::SimpleMapi none(folder_ / "none.dll");
    EXPECT_EQ(none.send({"a@b.org", "s", "b", "", ""}, {}, {}).outcome, Outcome::NoTransport);
    platform::windows_system::SimpleMapi other("C:\\windows\\system32\\version.dll");
    EXPECT_EQ(other.send({"a@b.org", "s", "b", "", ""}, {}, {}).outcome, Outcome::NoTransport);
}

}  // namespace
}  // namespace corvalence::test
