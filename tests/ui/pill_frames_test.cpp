#include "PillFixture.h"
#include "prefs/AlbumArtTint.h"
#include "support/Picture.h"
#include "ui/QmlModules.h"
#include "ui/controls/ArtworkView.h"

#include <QPainter>
#include <QQuickView>
#include <QtTest>

namespace {

const QString longReply = u"A Title That Is Far Too Long for the Field|||Band|||Album|||%1|||1|||%2|||7"_s;

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
    void drawsWhilePlaying()
    {
        const QString longTitle = longReply.section(u'|', 0, 0);
        for (const auto& [title, mode, framesPerSecond] : {std::tuple(u"Song"_s, PowerMode::normal, 15),
                                                           {u"Song"_s, PowerMode::powerUser, 30},
                                                           {longTitle, PowerMode::normal, 30},
                                                           {longTitle, PowerMode::lowPower, 0}}) {
            Shown shown(title + u"|||Band|||Album|||20000|||1|||true|||7"_s);
            shown.engine.power->manualMode = mode;
            shown.runLoop.advance(0.8); // past the title's rest
            const int pictures = shown.pictures(120);
            QVERIFY2(std::abs(pictures - 2 * framesPerSecond) <= 1, qPrintable(QString::number(pictures)));
        }
    }

    void restsWhilePaused()
    {
        Shown shown(longReply.arg(200).arg(u"false"_s));
        QVERIFY(!shown.draws([&] { shown.runLoop.advance(60); }));
        shown.pill->hover({100, 5});
        shown.runLoop.advance(0.8);
        QVERIFY(shown.pictures(60) >= 29); // the title scrolls under the pointer
        shown.pill->leave();
        QVERIFY(!shown.draws([&] { shown.runLoop.advance(60); }));
    }

    void followsElapsedByThePixel()
    {
        Shown shown(longReply.arg(2000).arg(u"true"_s));
        shown.engine.power->manualMode = PowerMode::lowPower;
        QVERIFY(!shown.draws([&] { shown.runLoop.advance(5); })); // less than half a pixel
        QVERIFY(shown.draws([&] { shown.engine.service->seekTo(1000); }));
    }

    /// A wide cover loses its sides, and its corners are round.
    void drawsCover()
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
    }

    void takesItsTintFromTheCover()
    {
        const QString reply = u"%1|||Band|||Album|||200|||100|||false|||77"_s;
        Shown shown(reply.arg(u"One"));
        shown.appearance.dark = true;
        Q_EMIT shown.appearance.changed();
        const auto play = [&](QStringView title, const QColor& color) {
            shown.engine.desktop.workspace.artworks[BundleId::music] = addressOf(pictureFile(color));
            shown.engine.reply(Player::appleMusic, reply.arg(title));
            shown.engine.service->refresh();
        };
        const auto filled = [&] {
            const QRectF line = shown.pill->layout().progress;
            return shown.view.grabWindow().pixelColor((line.center() - QPointF(20, 0)).toPoint());
        };
        const QColor teal(20, 160, 140); // can be seen as it is
        play(u"Two", teal);
        QTRY_COMPARE(filled().rgb(), boostedTint(teal).rgb());
        const QPoint middle = shown.pill->layout().albumArt.center().toPoint();
        QCOMPARE(shown.view.grabWindow().pixelColor(middle), teal);
        play(u"Three", Qt::red);
        QTRY_COMPARE(filled().hsvHue(), 0);
        shown.engine.theme->mode = PellarTheme::classic;
        QVERIFY(filled().hsvSaturation() < 20);
    }

private:
    struct Shown : PillFixture {
        explicit Shown(const QString& reply = longReply.arg(200).arg(u"true"_s)) : PillFixture(reply)
        {
            view.setInitialProperties({{u"pill"_s, QVariant::fromValue(pill.get())}});
            view.setSource(QUrl(u"qrc:/Pellar/Pill/MenuBarPlayerView.qml"_s));
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

QTEST_MAIN(PillFramesTest)
#include "pill_frames_test.moc"
