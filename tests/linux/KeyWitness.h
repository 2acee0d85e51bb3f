#pragma once

#include <QGuiApplication>
#include <QKeyEvent>
#include <QProcess>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdio>

/// A program of its own that shows a window and tells which keys arrive there. It is the test program,
/// started again: its main() has to call run() when isCalled().
class KeyWitness
{
public:
    /// The class begins with a capital letter.
    explicit KeyWitness(const QString& windowClass)
    {
        _program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        _program.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(option), windowClass});
    }
    ~KeyWitness()
    {
        _program.kill();
        _program.waitForFinished();
    }
    KeyWitness(const KeyWitness&) = delete;
    KeyWitness& operator=(const KeyWitness&) = delete;

    /// None before it has had the keyboard for the first time.
    xcb_window_t window() { return read(), _window; }
    qint64 processId() const { return _program.processId(); }

    /// The keys so far but for modifiers and the switch of layouts: with the modifiers that were held, and
    /// what the key types, as in "Shift+N=N". A comma stands between them.
    QString keys() { return read(), _keys.join(u','); }
    void forgetKeys() { read(), _keys.clear(); }

    static bool isCalled(int argc, char** argv) { return argc == 3 && qstrcmp(argv[1], option) == 0; }
    static int run(int argc, char** argv)
    {
        QGuiApplication application(argc, argv);
        QGuiApplication::setApplicationName(QString::fromLocal8Bit(argv[2]));
        Window window;
        window.resize(200, 100);
        window.show();
        return QGuiApplication::exec();
    }

private:
    class Window final : public QWindow
    {
        void focusInEvent(QFocusEvent*) override { print("window ", QString::number(winId())); }
        void keyPressEvent(QKeyEvent* event) override
        {
            constexpr int layoutSwitch = 0;
            const bool isModifier = event->key() >= Qt::Key_Shift && event->key() <= Qt::Key_Hyper_R;
            if (event->isAutoRepeat() || isModifier || event->key() == layoutSwitch) {
                return;
            }
            const bool isPrintable = !event->text().isEmpty() && event->text().front().isPrint();
            print("key ", QKeySequence(event->keyCombination()).toString(QKeySequence::PortableText) + u'=' +
                              (isPrintable ? event->text() : QString()));
        }
        static void print(const char* kind, const QString& value)
        {
            std::printf("%s%s\n", kind, value.toUtf8().constData());
            std::fflush(stdout);
        }
    };

    void read()
    {
        while (_program.canReadLine()) {
            const QString line = QString::fromUtf8(_program.readLine()).chopped(1);
            const QString value = line.section(u' ', 1);
            line.startsWith(u'w') ? void(_window = value.toUInt()) : _keys.append(value);
        }
    }

    static constexpr auto option = "--key-witness";
    QProcess _program;
    xcb_window_t _window = XCB_WINDOW_NONE;
    QStringList _keys;
};
