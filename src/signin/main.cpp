#include "MainProgram.h"
#include "SignInWindow.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QPalette>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

/// A crash must not write the tokens down: with a limit of 1 byte there is no core file, nor does the kernel
/// pipe one to a handler, as it would with 0. What the profile keeps, cookies that is, is the user's alone.
void keepSecrets()
{
    constexpr rlimit noCore{1, 1};
    setrlimit(RLIMIT_CORE, &noCore);
    umask(S_IRWXG | S_IRWXO);
}

/// The engine takes the colour scheme of pages from nothing but its command line.
void chooseColorScheme(bool isDark)
{
    constexpr char name[] = "QTWEBENGINE_CHROMIUM_FLAGS";
    const QByteArray scheme = isDark ? "0" : "1";
    qputenv(name, qgetenv(name) + " --blink-settings=preferredColorScheme=" + scheme);
}

QPalette palette(bool isDark)
{
    const QColor window = isDark ? QColor(0x26, 0x26, 0x29) : QColor(0xf4, 0xf4, 0xf6);
    const QColor text = isDark ? Qt::white : Qt::black;
    QPalette palette(window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Base, window);
    return palette;
}

} // namespace

/// The window in which the user signs in at Apple Music, as the main program starts it. "--dark" as the only
/// argument has it dark. It ends with the standard input.
int main(int argc, char** argv)
{
    const bool isDark = argc > 1 && qstrcmp(argv[1], "--dark") == 0;
    keepSecrets();
    chooseColorScheme(isDark);
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext=false"));
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellar"));
    QApplication::setApplicationDisplayName(QString());
    QApplication::setPalette(palette(isDark));

    MainProgram mainProgram;
    SignInWindow window(mainProgram);
    QObject::connect(&mainProgram, &MainProgram::ended, &window, [&window] {
        window.hide();
        QApplication::quit();
    });
    mainProgram.tell(QStringLiteral("ready"));
    return QApplication::exec();
}
