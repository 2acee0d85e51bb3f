#include "prefs/GlobalShortcuts.h"
#include "prefs/KeyboardShortcutManager.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class ShortcutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsAndShows_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<QString>("shown"); // none when the chord is refused
        QTest::newRow("letter") << 6U << 0x100U << u"⌘ Z"_s;
        QTest::newRow("all") << 124U << 0x1B00U << u"⌃⌥⇧⌘ Right Arrow"_s;
        QTest::newRow("shift") << 49U << 0x200U << u"⇧ Space"_s;
        QTest::newRow("other flags") << 126U << 0x1500U << u"⌃⌘ Up Arrow"_s; // Caps Lock is 0x400
        QTest::newRow("only others") << 126U << 0x400U << QString();
        QTest::newRow("number") << 130U << 0x800U << u"⌥ 130"_s;
        QTest::newRow("no key's") << 127U << 0x800U << u"⌥ 127"_s;
    }

    void recordsAndShows()
    {
        QFETCH(const quint32, keyCode);
        QFETCH(const quint32, modifiers);
        const auto binding = ShortcutBinding::from({.keyCode = keyCode, .modifiers = modifiers});
        QTEST(binding ? binding->displayString() : QString(), "shown");
        QCOMPARE(ShortcutBinding({49, 0}).displayString(), u"Space"_s);
    }

    void stores()
    {
        MemoryDefaults defaults;
        FakePlatform platform;
        const QString next = u"pellar.shortcut.nextTrack"_s;
        const QVariantMap standard = {{u"keyCode"_s, qlonglong{124}}, {u"modifiers"_s, qlonglong{768}}};
        {
            KeyboardShortcutManager manager(defaults, platform.notifications);
            QVERIFY(defaults.values.isEmpty());
            manager.setBinding(std::nullopt, PellarShortcut::nextTrack);
            manager.setBinding(ShortcutBinding{7, 0x1000}, PellarShortcut::playPause);
        }
        QCOMPARE(defaults.values.value(next), u"disabled"_s);
        KeyboardShortcutManager manager(defaults, platform.notifications);
        QVERIFY(!manager.binding(PellarShortcut::nextTrack));
        QVERIFY(manager.binding(PellarShortcut::playPause) == ShortcutBinding({7, 0x1000}));
        manager.resetToDefaults();
        QCOMPARE(defaults.values.size(), 3);
        QCOMPARE(defaults.values.value(next), standard);

        for (const QVariant& odd :
             {QVariant(u"off"_s), QVariant(QVariantMap{{u"keyCode"_s, qlonglong{3}}}),
              QVariant(QVariantMap{{u"keyCode"_s, 3.0}, {u"modifiers"_s, 256.0}}),
              QVariant(QVariantMap{{u"keyCode"_s, qlonglong{-1}}, {u"modifiers"_s, qlonglong{256}}})}) {
            defaults.setObject(next, odd);
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"nextTrack cannot be read"_s));
            QVERIFY(KeyboardShortcutManager(defaults, platform.notifications)
                        .binding(PellarShortcut::nextTrack) == ShortcutBinding({124, 768}));
        }
    }

    void registersAgainWhatIsTaken()
    {
        LogFile log;
        MemoryDefaults defaults;
        FakePlatform platform;
        FakeHotKeys& keys = platform.hotKeys;
        KeyboardShortcutManager manager(defaults, platform.notifications);
        GlobalShortcuts shortcuts({manager, keys, platform.notifications, platform.runLoop});
        keys.states[2] = HotKeys::State::taken;
        shortcuts.setupGlobalShortcuts();
        QCOMPARE(keys.applied.size(), 3);
        QVERIFY(!shortcuts.note(PellarShortcut::nextTrack).isEmpty());
        QVERIFY(shortcuts.note(PellarShortcut::playPause).isEmpty());
        platform.runLoop.advance(25);
        QCOMPARE(keys.applications, 3);
        QCOMPARE(log.take().size(), 1);
        keys.states.clear();
        platform.runLoop.advance(60);
        QCOMPARE(keys.applications, 4); // it has it now
        QVERIFY(shortcuts.note(PellarShortcut::nextTrack).isEmpty());

        manager.setBinding(std::nullopt, PellarShortcut::playPause);
        QCOMPARE(keys.applications, 5);
        QCOMPARE(keys.applied.first().id, 2U);
        shortcuts.setRecording(true);
        QVERIFY(keys.applied.isEmpty());
        shortcuts.setRecording(false);
        QCOMPARE(keys.applied.size(), 2);
    }
};

QTEST_GUILESS_MAIN(ShortcutsTest)
#include "shortcuts_test.moc"
