#include "PillFixture.h"
#include "base/EventLoop.h"
#include "ui/QmlModules.h"
#include "ui/controls/ArtworkView.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QQuickView>
#include <QTest>

namespace {

const QString longReply =
    QStringLiteral("A Title That Is Far Too Long for the Field|||Band|||Album|||%1|||1|||%2|||7");

} // namespace

/// How often the real view is drawn, and what a cover looks like in it.
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

private:
    struct Shown : PillFixture {
        explicit Shown(const QString& reply) : PillFixture(reply)
        {
            start(loop);
            view.setInitialProperties({{QStringLiteral("pill"), QVariant::fromValue(pill.get())}});
            view.setSource(QUrl(QStringLiteral("qrc:/Pellar/Pill/MenuBarPlayerView.qml")));
            view.show();
            connect(&view, &QQuickWindow::frameSwapped, &view, [this] { ++frames; });
        }
        /// Until nothing is drawn any more. False when it goes on and on.
        bool settles()
        {
            for (int patience = 0; patience < 50; ++patience) {
                frames = 0;
                if (!QTest::qWaitFor([this] { return frames > 0; }, 200)) {
                    return true;
                }
            }
            return false;
        }
        EventLoop loop;
        QQuickView view;
        int frames = 0;
    };
};

void PillFramesTest::drawsWhilePlaying_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<PowerMode>("mode");
    QTest::addColumn<double>("rate"); // frames per second
    const QString shortReply = QStringLiteral("Song|||Band|||Album|||200|||1|||true|||7");
    const QString scrolling = longReply.arg(200).arg(QStringLiteral("true"));
    QTest::newRow("meter") << shortReply << PowerMode::normal << 15.0;
    QTest::newRow("fast meter") << shortReply << PowerMode::powerUser << 30.0;
    QTest::newRow("meter and title") << scrolling << PowerMode::normal << 30.0;
    QTest::newRow("fast meter and title") << scrolling << PowerMode::powerUser << 30.0;
}

void PillFramesTest::drawsWhilePlaying()
{
    QFETCH(QString, reply);
    QFETCH(PowerMode, mode);
    QFETCH(double, rate);
    Shown shown(reply);
    shown.engine.power->manualMode = mode;
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY(timer.elapsed() > 800); // past the title's rest
    shown.frames = 0;
    timer.start();
    constexpr int enough = 20;
    QTRY_VERIFY(shown.frames > enough);
    const double measured = 1000.0 * enough / static_cast<double>(timer.elapsed());
    QVERIFY2(measured < rate * 1.1, qPrintable(QString::number(measured)));
}

void PillFramesTest::restsWhilePaused()
{
    Shown shown(longReply.arg(200).arg(QStringLiteral("false")));
    QVERIFY(shown.settles());
    shown.frames = 0;
    shown.engine.desktop.runLoop.advance(60);
    QVERIFY(!QTest::qWaitFor([&] { return shown.frames > 0; }, 1000));
    shown.pill->hover({100, 5});
    QTRY_VERIFY(shown.frames > 5); // the title scrolls under the pointer
    shown.pill->leave();
    QVERIFY(shown.settles());
}

void PillFramesTest::followsElapsedByThePixel()
{
    Shown shown(longReply.arg(2000).arg(QStringLiteral("true")));
    shown.engine.power->manualMode = PowerMode::lowPower;
    QVERIFY(shown.settles());
    shown.frames = 0;
    shown.engine.desktop.runLoop.advance(5); // a hundredth of a pixel a second
    QVERIFY(!QTest::qWaitFor([&] { return shown.frames > 0; }, 300));
    shown.engine.service->seekTo(1000);
    QTRY_VERIFY(shown.frames > 0);
}

/// A wide cover loses its sides, and its corners are round.
void PillFramesTest::drawsCover()
{
    QImage cover(400, 100, QImage::Format_RGB32);
    cover.fill(Qt::red);
    QPainter painter(&cover);
    painter.fillRect(160, 0, 80, 100, Qt::blue);
    painter.end();
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
    QCOMPARE(drawn.pixelColor(8, 8), QColor(Qt::blue));
    QCOMPARE(drawn.pixelColor(8, 15), QColor(Qt::blue));
    view.setImage({});
    view.setPlate(Qt::green);
    view.setSymbolColor(Qt::black);
    const QImage missing = window.grabWindow();
    QCOMPARE(missing.pixelColor(2, 8), QColor(Qt::green));
    QVERIFY(missing != drawn);
}

QTEST_MAIN(PillFramesTest)
#include "pill_frames_test.moc"
