#include "linux/desktop/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

namespace {

const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");

/// The settings part of a desktop portal.
class Portal final : public QDBusVirtualObject
{
public:
    explicit Portal(uint scheme) : _scheme(scheme)
    {
        _bus.registerVirtualObject(path, this);
        _bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~Portal() override { _bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop")); }

    void change(const QVariant& scheme, const QString& changedKey = key)
    {
        auto signal = QDBusMessage::createSignal(path, settings, QStringLiteral("SettingChanged"));
        signal.setArguments({group, changedKey, QVariant::fromValue(QDBusVariant(scheme))});
        _bus.send(signal);
    }
    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        // The value comes in two wrappings.
        const auto inner = QVariant::fromValue(QDBusVariant(_scheme));
        bus.send(message.createReply(QVariant::fromValue(QDBusVariant(inner))));
        return true;
    }

private:
    QDBusConnection _bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
    uint _scheme;
};

} // namespace

class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsPalette()
    {
        const DesktopAppearance appearance;
        QGuiApplication::setPalette(QPalette(Qt::black));
        QVERIFY(appearance.isDark());
        QGuiApplication::setPalette(QPalette(Qt::white));
        QVERIFY(!appearance.isDark());
    }

    void followsPortal()
    {
        const DesktopAppearance appearance;
        Portal portal(1); // comes later
        QSignalSpy changed(&appearance, &Appearance::changed);
        QTRY_VERIFY(appearance.isDark());
        portal.change(2U, QStringLiteral("contrast")); // another setting
        portal.change(2U);
        QTRY_VERIFY(!appearance.isDark());
        QCOMPARE(changed.count(), 2);
        portal.change(1U);
        QTRY_VERIFY(appearance.isDark());
        portal.change(QStringLiteral("violet")); // as good as no preference: the palette's turn
        QTRY_VERIFY(!appearance.isDark());
    }
};

QTEST_MAIN(AppearanceTest)
#include "appearance_test.moc"
