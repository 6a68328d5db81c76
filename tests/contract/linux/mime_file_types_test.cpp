#include "platform/linux/mime_file_types.h"

#include <gtest/gtest.h>

#include "temp_folder.h"

namespace corvalence::test {
namespace {

TEST(MimeDatabase, namesTheTypeOfAnExtensionThatIsRegistered) {
    const TempFolder folder;
    folder.write("globs2",
                 "# comment\n50:text/plain:*.txt\n40:text/weak:*.pdf\n50:application/pdf:*.pdf\n"
                 "30:text/weak:*.pdf\n50:text/c:*.C:cs\n50:text/small:*.c:cs\n60:text/any:*.[ab]\n"
                 "50:text/make:makefile\nx:text/bad:*.bad\n50:text/none:*.none\n50:text/empty:*.\nbroken\n");
    folder.write("application/pdf.xml",
                 "<comment xml:lang=\"de\">PDF-Dokument</comment><comment>PDF &amp; &lt;more&gt;</comment>");
    folder.write("text/plain.xml", "<comment>plain text document</comment>");
    folder.write("text/weak.xml", "<comment>weak</comment>");
    folder.write("text/c.xml", "<comment>C++ source</comment>");
    folder.write("text/small.xml", "<comment>C source</comment>");
    platform::linux_system::MimeFileTypes types(folder.path());
    EXPECT_EQ(types.typeText("txt"), "plain text document");
    EXPECT_EQ(types.typeText("TXT"), "plain text document");
    EXPECT_EQ(types.typeText("pdf"), "PDF & <more>");
    EXPECT_EQ(types.typeText("C"), "C++ source");
    EXPECT_EQ(types.typeText("c"), "C source");
    for (const char* extension : {"", "a", "[ab]", "bad", "none", "makefile", "tx", "txt2", "../plain"})
        EXPECT_EQ(types.typeText(extension), std::nullopt) << extension;
    EXPECT_EQ(platform::linux_system::MimeFileTypes(folder / "none").typeText("txt"), std::nullopt);
}

TEST(MimeDatabase, ofThisMachineKnowsPlainText) {
    const auto type = platform::linux_system::MimeFileTypes().typeText("txt");
    if (!type) GTEST_SKIP() << "no shared MIME database is installed";
    EXPECT_EQ(type, "plain text document");
}

}  // namespace
}  // namespace corvalence::test
