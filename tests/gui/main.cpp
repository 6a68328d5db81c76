#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    // No display is needed, and none is disturbed.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Nor do language and looks of the desktop matter, or what file dialogs remember of one another.
    qputenv("LC_ALL", "C.UTF-8");
    for (const char* name : {"LANGUAGE", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR",
                             "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"})
        qunsetenv(name);
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
