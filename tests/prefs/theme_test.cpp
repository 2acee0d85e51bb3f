#include "prefs/AlbumArtTint.h"
#include "prefs/ThemeManager.h"
#include "support/MemoryDefaults.h"

#include <QTest>
#include <QVector3D>

namespace {

QImage filled(const QColor& color, QSize size = {3, 2}, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(size, format);
    image.fill(color);
    return image;
}

} // namespace

class ThemeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void averages()
    {
        QImage holed = filled(Qt::white, {3, 2}, QImage::Format_ARGB32);
        holed.setPixelColor(0, 0, Qt::transparent);
        QCOMPARE(averageColor(holed), std::optional(QColor(213, 213, 213)));
        QImage striped = filled(Qt::red); // of a palette, with lines that are padded
        striped.setPixelColor(1, 1, Qt::blue);
        striped.convertTo(QImage::Format_Indexed8);
        QCOMPARE(averageColor(striped), std::optional(QColor(213, 0, 43)));
        const QColor bright(255, 254, 1); // sums beyond 32 bits
        QCOMPARE(averageColor(filled(bright, {4200, 4200})), std::optional(bright));
    }

    void boosts()
    {
        const QList<std::pair<QColor, QVector3D>> cases = {
            // to hue in degrees, saturation, brightness
            {Qt::black, {0, 0.45F, 0.55F}},
            {Qt::white, {0, 0.45F, 0.78F}},
            {QColor::fromHsvF(0.5F, 0.5F, 0.6F), {180, 0.8F, 0.69F}},
            {QColor::fromHsvF(0.75F, 0.9F, 0.3F), {270, 1.0F, 0.55F}},
        };
        for (const auto& [color, tint] : cases) {
            const QColor boosted = boostedTint(color);
            const QVector3D got(boosted.hsvHueF() * 360, boosted.hsvSaturationF(), boosted.valueF());
            QVERIFY2((got - tint).length() < 0.02F, qPrintable(color.name() + u" to " + boosted.name()));
        }
    }

    void followsModeAndArtwork()
    {
        const std::optional<QColor> greenTint = boostedTint(QColor(0, 100, 0));
        MemoryDefaults defaults;
        ThemeManager theme(defaults);
        QVERIFY(!theme.tint());
        theme.updateArtwork(filled(QColor(0, 100, 0)));
        QTRY_COMPARE(theme.tint(), greenTint);
        theme.mode = PellarTheme::classic;
        QVERIFY(!theme.tint());
        theme.mode = PellarTheme::albumArt;
        QTRY_COMPARE(theme.tint(), greenTint);
        theme.mode = PellarTheme::midnight;
        theme.updateArtwork(filled(Qt::blue));
        QCOMPARE(theme.tint(), std::optional(QColor::fromRgbF(0, 0, 0)));
        QCOMPARE(ThemeManager(defaults).tint(), theme.tint());
        theme.mode = PellarTheme::albumArt;
        QTRY_COMPARE(theme.tint(), std::optional(boostedTint(Qt::blue)));
        theme.updateArtwork({});
        QVERIFY(!theme.tint());
    }
};

QTEST_GUILESS_MAIN(ThemeTest)
#include "theme_test.moc"
