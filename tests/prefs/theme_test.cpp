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
    void boosts();
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
    QTest::newRow("64 bits") << filled(QColor(10, 200, 90), QImage::Format_RGBA64) << QColor(10, 200, 90);
    QImage striped = filled(Qt::red);
    striped.setPixelColor(1, 1, Qt::blue);
    QTest::newRow("palette, lines padded")
        << striped.convertToFormat(QImage::Format_Indexed8) << QColor(213, 0, 43);
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

void ThemeTest::boosts()
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
