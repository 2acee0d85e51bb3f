#include "app/AppDelegate.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "linux/settings/PlistUserDefaults.h"
#include "platform/Platform.h"
#include "ui/QmlModules.h"

#include <QApplication>
#include <QQuickWindow>
#include <QTranslator>

namespace {

/// Makes texts as long as they are in German, which is a good third longer.
class LongTexts : public QTranslator
{
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override { return false; }
    QString translate(const char* /*context*/, const char* text, const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        constexpr qsizetype shortWord = 4;
        QStringList words = QString::fromUtf8(text).split(u' ');
        for (QString& word : words) {
            if (word.size() >= shortWord && word.front().isLetter()) {
                word.insert(word.size() - 1, QStringLiteral("ungsweise").left((word.size() + 2) / 3 + 1));
            }
        }
        return words.join(u' ');
    }
};

} // namespace

/// The program with long texts, for the pictures that show whether there is room for them. With the address
/// of a feed of updates it asks that at once.
int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    importQmlModules();
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellar"));
    QApplication::setApplicationDisplayName(QStringLiteral("Pellar"));
    QApplication::setApplicationVersion(QStringLiteral("0.1.0"));
    QApplication::setQuitOnLastWindowClosed(false);
    LongTexts texts;
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        QApplication::installTranslator(&texts);
    }
    PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
    UserDefaults::setStandard(&defaults);
    const PlayerChoice casting(defaults);
    LinuxPlatform linux(casting);
    Platform& platform = linux.ports();
    Platform::setCurrent(&platform);
    AppDelegate delegate(platform, defaults, linux.appearance());
    delegate.applicationDidFinishLaunching();

    constexpr qsizetype keyLength = 32;
    UpdaterManager updater(
        {.defaults = defaults, .runLoop = platform.runLoop, .workspace = platform.workspace},
        {.feed = arguments.value(1),
         .publicKey = QByteArray(keyLength, '\1'),
         .version = QApplication::applicationVersion(),
         .systemVersion = {},
         .folder = {}});
    const UpdateWindowController window({.defaults = defaults, .appearance = linux.appearance()}, updater);
    if (arguments.size() > 1) {
        updater.checkForUpdates();
    }
    return QApplication::exec();
}
