#pragma once

#include <QProcess>
#include <QStringList>

#include <xcb/xcb.h>

/// A program of its own that shows a window and tells which keys arrive there. It is the test program,
/// started again: its main() has to call run() when isCalled().
class KeyWitness
{
public:
    /// The class begins with a capital letter.
    explicit KeyWitness(const QString& windowClass);
    ~KeyWitness();
    KeyWitness(const KeyWitness&) = delete;
    KeyWitness& operator=(const KeyWitness&) = delete;

    /// None before it has had the keyboard for the first time.
    xcb_window_t window();
    qint64 processId() const { return _program.processId(); }

    /// The keys so far but for modifiers and the switch of layouts: with the modifiers that were held, and
    /// what the key types, as in "Shift+N=N".
    QStringList keys();

    static bool isCalled(int argc, char** argv);
    static int run(int argc, char** argv);

private:
    void read();

    QProcess _program;
    xcb_window_t _window = XCB_WINDOW_NONE;
    QStringList _keys;
};
