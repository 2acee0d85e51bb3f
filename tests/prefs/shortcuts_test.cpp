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
    void recordsAndShows()
    {
        const auto shown = [](quint32 keyCode, quint32 modifiers) {
            const auto binding = ShortcutBinding::from({.keyCode = keyCode, .modifiers = modifiers});
            return binding ? binding->displayString() : QString();
        };
        QCOMPARE(shown(6, 0x100), u"⌘ Z"_s);
        QCOMPARE(shown(124, 0x1B00), u"⌃⌥⇧⌘ Right Arrow"_s);
        QCOMPARE(shown(126, 0x1500), u"⌃⌘ Up Arrow"_s); // Caps Lock, 0x400, does not count
        QCOMPARE(shown(49, 0x200), u"⇧ Space"_s);
        QCOMPARE(shown(49, 0x400), QString());
        QCOMPARE(shown(127, 0x800), u"⌥ 127"_s);
        QCOMPARE(ShortcutBinding({66, 0}).displayString(), u"66"_s);
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

        for (const QVariantMap& odd :
             {QVariantMap{{u"keyCode"_s, qlonglong{3}}},
              QVariantMap{{u"keyCode"_s, qlonglong{-1}}, {u"modifiers"_s, qlonglong{256}}}}) {
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

    /// It does what the first of them does, whichever was recorded last.
    void chordOfTwoActions()
    {
        MemoryDefaults defaults;
        FakePlatform platform;
        KeyboardShortcutManager manager(defaults, platform.notifications);
        GlobalShortcuts shortcuts({manager, platform.hotKeys, platform.notifications, platform.runLoop});
        shortcuts.setupGlobalShortcuts();
        const auto registered = [&] {
            QList<quint32> ids;
            for (const HotKey& each : platform.hotKeys.applied) {
                ids << each.id;
            }
            return ids;
        };
        const auto right = ShortcutBinding::standard(PellarShortcut::nextTrack);
        manager.setBinding(right, PellarShortcut::playPause);
        QCOMPARE(registered(), (QList<quint32>{1, 3}));
        QCOMPARE(shortcuts.note(PellarShortcut::nextTrack), u"“Play / Pause” has this shortcut."_s);
        QCOMPARE(shortcuts.note(PellarShortcut::playPause), QString());
        manager.setBinding(std::nullopt, PellarShortcut::playPause);
        QCOMPARE(registered(), (QList<quint32>{2, 3}));
        QCOMPARE(shortcuts.note(PellarShortcut::nextTrack), QString());
        manager.setBinding(right, PellarShortcut::previousTrack);
        QCOMPARE(registered(), QList<quint32>{2});
        QCOMPARE(shortcuts.note(PellarShortcut::previousTrack), u"“Next Track” has this shortcut."_s);
        manager.setBinding(ShortcutBinding{7, 0x1000}, PellarShortcut::nextTrack);
        QCOMPARE(registered(), (QList<quint32>{2, 3}));
    }
};

QTEST_GUILESS_MAIN(ShortcutsTest)
#include "shortcuts_test.moc"
