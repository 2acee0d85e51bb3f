#include "KeyWitness.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

#include <cstdio>

namespace {

constexpr auto option = "--key-witness";

void print(const QString& line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

class WitnessWindow final : public QWindow
{
protected:
    void focusInEvent(QFocusEvent*) override { print(QStringLiteral("window %1").arg(winId())); }

    void keyPressEvent(QKeyEvent* event) override
    {
        constexpr int layoutSwitch = 0;
        const bool isModifier = event->key() >= Qt::Key_Shift && event->key() <= Qt::Key_Hyper_R;
        if (event->isAutoRepeat() || isModifier || event->key() == layoutSwitch) {
            return;
        }
        const QString typed = event->text();
        const bool isPrintable = !typed.isEmpty() && typed.front().isPrint();
        print(QStringLiteral("key %1=%2")
                  .arg(QKeySequence(event->keyCombination()).toString(QKeySequence::PortableText),
                       isPrintable ? typed : QString()));
    }
};

} // namespace

KeyWitness::KeyWitness(const QString& windowClass)
{
    _program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    _program.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(option), windowClass});
}

KeyWitness::~KeyWitness()
{
    _program.kill();
    _program.waitForFinished();
}

xcb_window_t KeyWitness::window()
{
    read();
    return _window;
}

QStringList KeyWitness::keys()
{
    read();
    return _keys;
}

void KeyWitness::read()
{
    while (_program.canReadLine()) {
        const QString line = QString::fromUtf8(_program.readLine()).remove(u'\n');
        const QString value = line.section(u' ', 1);
        if (line.startsWith(QStringLiteral("window "))) {
            _window = value.toUInt();
        } else {
            _keys.append(value);
        }
    }
}

bool KeyWitness::isCalled(int argc, char** argv)
{
    return argc == 3 && qstrcmp(argv[1], option) == 0;
}

int KeyWitness::run(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QString::fromLocal8Bit(argv[2]));
    WitnessWindow window;
    window.resize(200, 100);
    window.show();
    return QGuiApplication::exec();
}
