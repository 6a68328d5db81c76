#include <gtest/gtest.h>

#include <QProcess>

namespace corvalence::gui {
namespace {

TEST(NoDisplay, IsToldAndEndsTheProgram) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "xcb");
    environment.insert("DISPLAY", ":4093");
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(CORVALENCE, QStringList());
    ASSERT_TRUE(program.waitForFinished(-1)) << program.errorString().toStdString();
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 4);
    const std::string told = program.readAllStandardError().toStdString();
    EXPECT_NE(told.find("could not connect to display :4093\n"), std::string::npos) << told;
    EXPECT_NE(told.find("corvalence: there is no display to show windows on; corvalencectl"),
              std::string::npos)
        << told;
}

}  // namespace
}  // namespace corvalence::gui
