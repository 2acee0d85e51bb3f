#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/DisplayGuard.h"
#include "app/SingleInstance.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "linux/desktop/MemoryFootprint.h"
#include "linux/desktop/RunningCopy.h"
#include "linux/settings/PlistUserDefaults.h"
#include "platform/Platform.h"
#include "ui/QmlModules.h"

#include <QApplication>
#include <QQuickWindow>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

/// The pill is a window that places itself, which Wayland has no word for: there it runs on XWayland.
void chooseWindowSystem()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
}

/// Without an address the bus library would start a bus of its own, which nobody is on and nothing ends.
void keepToRunningBus()
{
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + qgetenv("XDG_RUNTIME_DIR") + "/bus");
    }
}

/// A frame of the pill is some kilobytes. Sent over the connection it waits for nobody, while shared memory
/// may be drawn into only when the X server has answered that it is done with the last frame. Nor is there
/// anything to wait for before a frame is drawn: what changes together changes in one go.
void drawWithoutWaiting()
{
    const auto setDefault = [](const char* name, const char* value) {
        if (!qEnvironmentVariableIsSet(name)) {
            qputenv(name, value);
        }
    };
    setDefault("QT_XCB_NO_MITSHM", "1");
    setDefault("QT_QPA_UPDATE_IDLE_TIME", "0"); // milliseconds
}

/// A pill needs no graphics card; the software renderer takes a third of the memory.
void chooseRenderer()
{
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") && qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

/// The program that is not the first one.
int handOver(int argc, char** argv, const CommandLine& line)
{
    const QCoreApplication application(argc, argv);
    if (RunningCopy::request(line.request ? rawValue(*line.request) : QString())) {
        return 0;
    }
    std::fputs("Pellar is already running, and does not answer.\n", stderr);
    return 1;
}

int run(int argc, char** argv, std::optional<Request> request)
{
    chooseWindowSystem();
    chooseRenderer();
    drawWithoutWaiting();
    importQmlModules();
    auto display = std::make_optional<DisplayGuard>();
    const QApplication application(argc, argv);
    display.reset();
    QApplication::setApplicationDisplayName(QStringLiteral("Pellar"));
    QApplication::setDesktopFileName(QStringLiteral("com.orvalen.pellar"));
    QApplication::setQuitOnLastWindowClosed(false);

    PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
    UserDefaults::setStandard(&defaults);
    const PlayerChoice casting(defaults);
    LinuxPlatform linux(casting);
    Platform::setCurrent(&linux.ports());

    AppDelegate delegate(linux.ports(), defaults, linux.appearance());
    delegate.applicationDidFinishLaunching();
    if (request) {
        delegate.perform(*request);
    }
    constexpr double startSeconds = 3;
    linux.ports().runLoop.after(startSeconds, &delegate, releaseReadOnlyPages);
    QObject::connect(&delegate, &AppDelegate::windowClosed, releaseFreedMemory);
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    keepHeapSmall();
    keepToRunningBus();
    QCoreApplication::setApplicationName(QStringLiteral("pellar"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PELLAR_VERSION));
    QStringList arguments;
    std::transform(argv, argv + argc, std::back_inserter(arguments),
                   [](const char* argument) { return QString::fromLocal8Bit(argument); });
    const auto line = CommandLine::parse(arguments, QCoreApplication::applicationVersion());
    if (!line.answer.isEmpty()) {
        std::fputs(qUtf8Printable(line.answer), line.isWrong ? stderr : stdout);
        return line.isWrong ? 2 : 0;
    }
    const SingleInstance instance;
    if (!instance.isFirst()) {
        return handOver(argc, argv, line);
    }
    return line.request == Request::quit ? 0 : run(argc, argv, line.request);
}
