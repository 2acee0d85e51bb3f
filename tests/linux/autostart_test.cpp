#include "linux/desktop/AutostartEntry.h"
#include "prefs/LaunchAtLogin.h"
#include "support/Command.h"
#include "support/LogFile.h"

#include <QDir>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

class AutostartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", _folder->filePath(u"home"_s).toUtf8());
        qputenv("XDG_CONFIG_DIRS", _folder->filePath(u"system"_s).toUtf8());
        qputenv("XDG_CURRENT_DESKTOP", "Ubuntu:GNOME");
    }

    void entries()
    {
        const auto isOn = [this](const QByteArray& lines) {
            put(u"system"_s, "[Desktop Entry]\n" + lines + '\n');
            return AutostartEntry(u"/bin/true"_s).isEnabled();
        };
        for (const char* const on :
             {"Exec=sh", "Exec = \"/bin/sh\" -c true", "Exec=sh\nOnlyShowIn=KDE;GNOME;"}) {
            QVERIFY2(isOn(on), on);
        }
        for (const char* const off :
             {"Exec=sh\nHidden=true", "Exec=sh\nX-GNOME-Autostart-enabled=false", "Exec=sh\nOnlyShowIn=KDE;",
              "Exec=sh\nNotShowIn=GNOME;", "Exec=/bin/no-such-program", "Exec=sh\nTryExec=no-such-program",
              "Name=x\n[Desktop Action y]\nExec=sh", "\xFF[=;\"\nExec=\"sh\\"}) {
            QVERIFY2(!isOn(off), off);
        }
    }

    void startsThisCopy()
    {
        const QString program = _folder->filePath(u"a \"$odd\" `odd` \\path"_s);
        QFile script(program);
        QVERIFY(script.open(QFile::WriteOnly) && script.write("#!/bin/sh\ntouch \"$0 ran\"\n") > 0);
        script.close();
        QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        AutostartEntry entry(program);
        QVERIFY(!entry.isEnabled());
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        QVERIFY(entry.isEnabled());
        const QString file = _folder->filePath(u"home/autostart/com.orvalen.pellar.desktop"_s);
        QCOMPARE(output(u"gio"_s, {u"launch"_s, file}), QString());
        QTRY_VERIFY(QFile::exists(program + u" ran")); // by those who start such entries
        QVERIFY(QFile::remove(program));
        QVERIFY(!entry.isEnabled());
        QCOMPARE(entry.setEnabled(false), std::nullopt);
        QVERIFY(QDir(_folder->filePath(u"home/autostart"_s)).isEmpty());

        put(u"system"_s, "[Desktop Entry]\nExec=sh\n");
        QVERIFY(entry.isEnabled());
        QCOMPARE(entry.setEnabled(false), std::nullopt);
        QVERIFY(!entry.isEnabled());
    }

    void failuresAreLogged()
    {
        LogFile log;
        AutostartEntry entry(u"/bin/true"_s);
        LaunchAtLogin launch(entry);
        QVERIFY(QFile(_folder->filePath(u"home"_s)).open(QFile::WriteOnly)); // where the folder should be
        launch.setEnabled(true);
        QVERIFY(!launch.isEnabled());
        const QStringList lines = log.take();
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().startsWith(u"LaunchAtLogin: failed to enable login item – "));
    }

private:
    void put(const QString& place, const QByteArray& entry)
    {
        QVERIFY(QDir(_folder->path()).mkpath(place + u"/autostart"));
        QFile file(_folder->filePath(place + u"/autostart/com.orvalen.pellar.desktop"));
        QVERIFY(file.open(QFile::WriteOnly) && file.write(entry) > 0);
    }

    std::unique_ptr<QTemporaryDir> _folder;
};

QTEST_GUILESS_MAIN(AutostartTest)
#include "autostart_test.moc"
