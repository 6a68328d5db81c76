#include "platform/linux/mime_file_types.h"

#include <gtest/gtest.h>

#include "temp_folder.h"

namespace corvalence::test {
namespace {

using platform::linux_system::MimeFileTypes;

class MimeDatabase : public testing::Test {
  protected:
    MimeDatabase() {
        folder_.write(
            "globs2",
            "# "
            "comment\n50:text/plain:*.txt\n40:text/weak:*.pdf\n50:application/pdf:*.pdf\n30:text/weak:*.pdf\n"
            "50:text/c:*.C:cs\n50:text/small:*.c:cs\n60:text/any:*.[ab]\n50:text/make:makefile\n"
            "x:text/bad:*.bad\n50:text/none:*.none\n50:text/empty:*.\nbroken\n");
        folder_.write("application/pdf.xml",
                      "<mime-type><comment xml:lang=\"de\">PDF-Dokument</comment>"
                      "<comment>PDF &amp; &lt;more&gt;</comment></mime-type>");
        folder_.write("text/plain.xml", "<comment>plain text document</comment>");
        folder_.write("text/weak.xml", "<comment>weak</comment>");
        folder_.write("text/c.xml", "<comment>C++ source</comment>");
        folder_.write("text/small.xml", "<comment>C source</comment>");
    }

    TempFolder folder_;
    MimeFileTypes types_{folder_.path()};
};

TEST_F(MimeDatabase, namesTheTypeOfAnExtension) {
    EXPECT_EQ(types_.typeText("txt"), "plain text document");
    EXPECT_EQ(types_.typeText("TXT"), "plain text document");
    EXPECT_EQ(types_.typeText("pdf"), "PDF & <more>");
    EXPECT_EQ(types_.typeText("C"), "C++ source");
    EXPECT_EQ(types_.typeText("c"), "C source");
}

TEST_F(MimeDatabase, namesNothingThatIsNotRegistered) {
    for (const char* extension : {"", "a", "[ab]", "bad", "none", "makefile", "tx", "txt2", "../plain"}) {
        EXPECT_EQ(types_.typeText(extension), std::nullopt) << extension;
    }
    const TempFolder empty;
    EXPECT_EQ(MimeFileTypes(empty.path()).typeText("txt"), std::nullopt);
}

TEST(InstalledMimeDatabase, knowsPlainText) {
    MimeFileTypes types;
    if (!types.typeText("txt")) GTEST_SKIP() << "no shared MIME database is installed";
    EXPECT_EQ(types.typeText("txt"), "plain text document");
}

}  // namespace
}  // namespace corvalence::test
