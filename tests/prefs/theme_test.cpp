#include "prefs/AlbumArtTint.h"
#include "prefs/ThemeManager.h"
#include "support/MemoryDefaults.h"

#include <QTest>
#include <QVector3D>

namespace {

QImage filled(const QColor& color, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(3, 2, format);
    image.fill(color);
    return image;
}

/// Counts what other threads hand to an object.
class DeliveryWatch final : public QObject
{
public:
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        count += event->type() == QEvent::MetaCall ? 1 : 0;
        return false;
    }

    int count = 0;
};

} // namespace

class ThemeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void average_data();
    void average();
    void boost_data();
    void boost();
    void followsModeAndArtwork();
    void dropsWhatComesTooLate_data();
    void dropsWhatComesTooLate();
};

void ThemeTest::average_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QColor>("color");
    QImage halves = filled(Qt::white, QImage::Format_ARGB32);
    halves.setPixelColor(0, 0, Qt::transparent); // and five sixths of white
    QTest::newRow("transparent is black") << halves << QColor(213, 213, 213);
    QTest::newRow("half transparent")
        << filled(QColor(255, 0, 0, 128), QImage::Format_ARGB32) << QColor(128, 0, 0);
    QTest::newRow("grey scale") << filled(QColor(70, 70, 70), QImage::Format_Grayscale8)
                                << QColor(70, 70, 70);
    QTest::newRow("64 bits") << filled(QColor(10, 200, 90), QImage::Format_RGBA64) << QColor(10, 200, 90);
    QImage stripes = filled(Qt::red).convertToFormat(QImage::Format_Indexed8); // lines padded to 4 bytes
    stripes.setColorTable({qRgb(255, 0, 0), qRgb(0, 0, 255)});
    for (int x = 0; x < 3; ++x) {
        stripes.setPixel(x, 0, 0);
        stripes.setPixel(x, 1, 1);
    }
    QTest::newRow("palette") << stripes << QColor(128, 0, 128);
    QImage large(4200, 4200, QImage::Format_RGB32);
    large.fill(QColor(255, 254, 1));
    QTest::newRow("sums beyond 32 bits") << large << QColor(255, 254, 1);
}

void ThemeTest::average()
{
    QFETCH(QImage, image);
    QTEST(averageColor(image).value(), "color");
    QVERIFY(!averageColor(QImage()));
}

void ThemeTest::boost_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QVector3D>("tint"); // hue in degrees, saturation, brightness
    QTest::newRow("black") << QColor(Qt::black) << QVector3D(0, 0.45F, 0.55F);
    QTest::newRow("white") << QColor(Qt::white) << QVector3D(0, 0.45F, 0.78F);
    QTest::newRow("in range") << QColor::fromHsvF(0.5F, 0.5F, 0.6F) << QVector3D(180, 0.8F, 0.69F);
    QTest::newRow("vivid") << QColor::fromHsvF(0.75F, 0.9F, 0.3F) << QVector3D(270, 1.0F, 0.55F);
}

void ThemeTest::boost()
{
    QFETCH(QColor, color);
    QFETCH(QVector3D, tint);
    const QColor boosted = boostedTint(color);
    const QVector3D got(std::max(0.0F, boosted.hsvHueF()) * 360, boosted.hsvSaturationF(), boosted.valueF());
    QVERIFY2((got - tint).length() < 0.02F, qPrintable(boosted.name()));
}

void ThemeTest::followsModeAndArtwork()
{
    const QImage green = filled(QColor(0, 100, 0));
    const std::optional<QColor> greenTint = boostedTint(QColor(0, 100, 0));
    MemoryDefaults defaults;
    ThemeManager theme(defaults);
    QVERIFY(!theme.tint());
    theme.updateArtwork(green);
    QTRY_COMPARE(theme.tint(), greenTint);
    theme.setMode(PellarTheme::classic);
    QVERIFY(!theme.tint());
    theme.setMode(PellarTheme::albumArt);
    QTRY_COMPARE(theme.tint(), greenTint);
    theme.setMode(PellarTheme::midnight);
    theme.updateArtwork(filled(Qt::blue));
    QCOMPARE(theme.tint(), std::optional(QColor::fromRgbF(0, 0, 0)));
    QCOMPARE(ThemeManager(defaults).tint(), theme.tint());
    theme.setMode(PellarTheme::albumArt);
    QTRY_COMPARE(theme.tint(), std::optional(boostedTint(Qt::blue)));
    theme.updateArtwork({});
    QVERIFY(!theme.tint());
}

void ThemeTest::dropsWhatComesTooLate_data()
{
    QTest::addColumn<PellarTheme>("mode");
    QTest::addColumn<QImage>("artwork");
    QTest::newRow("another theme") << PellarTheme::tide << filled(Qt::blue);
    QTest::newRow("artwork gone") << PellarTheme::albumArt << QImage();
}

void ThemeTest::dropsWhatComesTooLate()
{
    QFETCH(PellarTheme, mode);
    QFETCH(QImage, artwork);
    MemoryDefaults defaults;
    ThemeManager theme(defaults);
    DeliveryWatch results;
    theme.installEventFilter(&results);
    theme.updateArtwork(filled(Qt::blue));
    theme.setMode(mode);
    theme.updateArtwork(artwork);
    const auto tint = theme.tint();
    QTRY_VERIFY(results.count > 0);
    QCOMPARE(theme.tint(), tint);
}

QTEST_GUILESS_MAIN(ThemeTest)
#include "theme_test.moc"
