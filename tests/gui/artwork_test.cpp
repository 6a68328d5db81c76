#include <gtest/gtest.h>

#include <QDir>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>

#include "gui/support/icons.h"

namespace corvalence::gui {
namespace {

/// Greatest difference in brightness that a picture of that size makes on a plain ground, of 255.
int standOut(QSvgRenderer& picture, int size, QColor ground) {
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    picture.render(&painter);
    painter.end();
    int most = 0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x)
            most = std::max(most, std::abs(qGray(image.pixel(x, y)) - qGray(ground.rgb())));
    }
    return most;
}

TEST(Artwork, CanBeSeenInEverySizeOnLightAndDarkGrounds) {
    ASSERT_FALSE(icon(QStringLiteral("corvalence")).isNull());
    const QDir folder(QStringLiteral(":/icons"));
    const QStringList names = folder.entryList({QStringLiteral("*.svg")});
    ASSERT_GT(names.size(), 100);
    for (const QString& name : names) {
        QSvgRenderer picture(folder.filePath(name));
        ASSERT_TRUE(picture.isValid()) << name.toStdString();
        EXPECT_EQ(picture.viewBoxF().width(), picture.viewBoxF().height()) << name.toStdString();
        for (const int size : {16, 24, 48}) {
            // Two lines of a log are each for one of the two colour schemes.
            if (name != QLatin1String("log-4.svg")) {
                EXPECT_GT(standOut(picture, size, Qt::white), 60) << name.toStdString();
            }
            if (name != QLatin1String("log-3.svg")) {
                EXPECT_GT(standOut(picture, size, QColor(35, 38, 41)), 60) << name.toStdString();
            }
        }
    }
}

}  // namespace
}  // namespace corvalence::gui
