#include "PillFixture.h"
#include "prefs/AlbumArtTint.h"
#include "ui/QmlModules.h"
#include "ui/controls/ArtworkView.h"

#include <QBuffer>
#include <QPainter>
#include <QQuickView>
#include <QTest>

namespace {

const QString longReply =
    QStringLiteral("A Title That Is Far Too Long for the Field|||Band|||Album|||%1|||1|||%2|||7");

} // namespace

/// What the real view draws, and how often.
class PillFramesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        importQmlModules();
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    void drawsWhilePlaying_data();
    void drawsWhilePlaying();
    void restsWhilePaused();
    void followsElapsedByThePixel();
    void drawsCover();
    void takesItsTintFromTheCover();

private:
    struct Shown : PillFixture {
        explicit Shown(const QString& reply = longReply.arg(200).arg(QStringLiteral("true")))
            : PillFixture(reply)
        {
            view.setInitialProperties({{QStringLiteral("pill"), QVariant::fromValue(pill.get())}});
            view.setSource(QUrl(QStringLiteral("qrc:/Pellar/Pill/MenuBarPlayerView.qml")));
            view.setGeometry({{300, 300}, pill->layout().size.toSize()}); // away from the pointer
            view.setResizeMode(QQuickView::SizeRootObjectToView);
            view.show();
            [[maybe_unused]] const bool isExposed = QTest::qWaitForWindowExposed(&view);
            connect(&view, &QQuickWindow::frameSwapped, &view, [this] { isDrawn = true; });
        }

        /// How many different pictures there are in so many sixtieths of a second.
        int pictures(int sixtieths)
        {
            int count = 0;
            QImage last = view.grabWindow();
            for (int i = 0; i < sixtieths; ++i) {
                runLoop.advance(1.0 / 60);
                const QImage next = view.grabWindow();
                count += next != last ? 1 : 0;
                last = next;
            }
            return count;
        }

        /// Whether a change asks for a frame.
        bool draws(const std::function<void()>& change)
        {
            while (QTest::qWaitFor([this] { return std::exchange(isDrawn, false); }, 100)) {
            }
            change();
            return QTest::qWaitFor([this] { return isDrawn; }, 100);
        }

        QQuickView view;
        bool isDrawn = false;
    };
};

void PillFramesTest::drawsWhilePlaying_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<PowerMode>("mode");
    QTest::addColumn<int>("rate"); // frames per second
    QTest::newRow("meter") << QStringLiteral("Song") << PowerMode::normal << 15;
    QTest::newRow("fast meter") << QStringLiteral("Song") << PowerMode::powerUser << 30;
    QTest::newRow("meter and title") << longReply.section(u'|', 0, 0) << PowerMode::normal << 30;
    QTest::newRow("neither") << longReply.section(u'|', 0, 0) << PowerMode::lowPower << 0;
}

void PillFramesTest::drawsWhilePlaying()
{
    QFETCH(QString, title);
    QFETCH(PowerMode, mode);
    QFETCH(int, rate);
    Shown shown(title + QStringLiteral("|||Band|||Album|||20000|||1|||true|||7"));
    shown.engine.power->manualMode = mode;
    shown.runLoop.advance(0.8); // past the title's rest
    const int pictures = shown.pictures(120);
    QVERIFY2(std::abs(pictures - 2 * rate) <= 1, qPrintable(QString::number(pictures)));
}

void PillFramesTest::restsWhilePaused()
{
    Shown shown(longReply.arg(200).arg(QStringLiteral("false")));
    QVERIFY(!shown.draws([&] { shown.runLoop.advance(60); }));
    shown.pill->hover({100, 5});
    shown.runLoop.advance(0.8);
    QVERIFY(shown.pictures(60) >= 29); // the title scrolls under the pointer
    shown.pill->leave();
    QVERIFY(!shown.draws([&] { shown.runLoop.advance(60); }));
}

void PillFramesTest::followsElapsedByThePixel()
{
    Shown shown(longReply.arg(2000).arg(QStringLiteral("true")));
    shown.engine.power->manualMode = PowerMode::lowPower;
    QVERIFY(!shown.draws([&] { shown.runLoop.advance(5); })); // less than half a pixel
    QVERIFY(shown.draws([&] { shown.engine.service->seekTo(1000); }));
}

/// A wide cover loses its sides, and its corners are round.
void PillFramesTest::drawsCover()
{
    QImage cover(400, 100, QImage::Format_RGB32);
    cover.fill(Qt::red);
    QPainter(&cover).fillRect(160, 0, 80, 100, Qt::blue);
    QQuickWindow window;
    window.setColor(Qt::white);
    window.resize(16, 16);
    ArtworkView view(window.contentItem());
    view.setSize({16, 16});
    view.setRadius(4);
    view.setImage(cover);
    const QImage drawn = window.grabWindow();
    QCOMPARE(drawn.pixelColor(0, 0), QColor(Qt::white));
    QVERIFY(drawn.pixelColor(0, 8).red() > 200 && drawn.pixelColor(15, 8).red() > 200);
    QCOMPARE(drawn.pixelColor(8, 15), QColor(Qt::blue));
    view.setImage({});
    view.setPlate(Qt::green);
    view.setSymbolColor(Qt::black);
    const QImage missing = window.grabWindow();
    QCOMPARE(missing.pixelColor(2, 8), QColor(Qt::green));
    QVERIFY(missing != drawn);
}

void PillFramesTest::takesItsTintFromTheCover()
{
    const auto cover = [](const QColor& color) -> QString {
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(color);
        QBuffer file;
        image.save(&file, "png");
        return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(file.data().toBase64());
    };
    Shown shown(QStringLiteral("One|||Band|||Album|||200|||100|||false|||77"));
    shown.appearance.dark = true;
    Q_EMIT shown.appearance.changed();
    const auto play = [&](const char* title, const QColor& color) {
        shown.engine.desktop.workspace.artworks[BundleId::music] = cover(color);
        shown.engine.reply(Player::appleMusic,
                           QString::fromLatin1(title) +
                               QStringLiteral("|||Band|||Album|||200|||100|||false|||77"));
        shown.engine.service->refresh();
    };
    const auto filled = [&] {
        const QRectF line = shown.pill->layout().progress;
        return shown.view.grabWindow().pixelColor((line.center() - QPointF(20, 0)).toPoint());
    };
    const QColor teal(20, 160, 140); // can be seen as it is
    play("Two", teal);
    QTRY_COMPARE(filled().rgb(), boostedTint(teal).rgb());
    const QPoint middle = shown.pill->layout().albumArt.center().toPoint();
    QCOMPARE(shown.view.grabWindow().pixelColor(middle), teal);
    play("Three", Qt::red);
    QTRY_COMPARE(filled().hsvHue(), 0);
    shown.engine.theme->mode = PellarTheme::classic;
    QVERIFY(filled().hsvSaturation() < 20);
}

QTEST_MAIN(PillFramesTest)
#include "pill_frames_test.moc"
