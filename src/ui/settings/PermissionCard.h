#pragma once

#include <QColor>
#include <QObject>
#include <QProperty>
#include <QQmlEngine>

#include <functional>

/// A card of the onboarding window: something that the program may do, whether it may, and what the user can
/// do about that.
class PermissionCard : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QColor color READ color CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString description READ description CONSTANT)
    Q_PROPERTY(bool isChoice READ isChoice CONSTANT)
    Q_PROPERTY(QStringList actions READ actions CONSTANT)
    Q_PROPERTY(bool isDone READ isDone NOTIFY changed)
    Q_PROPERTY(int chosen READ chosen NOTIFY changed)
    Q_PROPERTY(QString finding READ finding NOTIFY changed)
    Q_PROPERTY(bool isGood READ isGood NOTIFY changed)

public:
    enum Kind {
        grant,         ///< a permission that the program asks for
        choice,        ///< of two or more, by the user
        permission,    ///< one that is given in the system's own settings
        noActionNeeded ///< nothing to ask for
    };

    /// What does not change.
    struct Face {
        QString symbol;
        QColor color;
        QString title;
        QString description;
        Kind kind = noActionNeeded;
        QStringList actions = {}; ///< what the buttons say
    };

    /// How things stand.
    struct State {
        bool isDone = false;  ///< granted, chosen or not needed
        QString finding = {}; ///< what that means on this desktop, in a sentence
        bool isGood = true;   ///< whether the finding is that all works
        int chosen = -1;      ///< the number of the chosen action; -1 for none

        friend bool operator==(const State&, const State&) = default;
    };

    PermissionCard(Face face, std::function<State()> read, std::function<void(int action)> act);

    QString symbol() const { return _face.symbol; }
    QColor color() const { return _face.color; }
    QString title() const { return _face.title; }
    QString description() const { return _face.description; }
    bool isChoice() const { return _face.kind == choice; }
    QStringList actions() const { return _face.actions; }
    bool isDone() const { return _state.value().isDone; }
    int chosen() const { return _state.value().chosen; }
    QString finding() const { return _state.value().finding; }
    bool isGood() const { return _state.value().isGood; }

    /// Does what one of the buttons says.
    Q_INVOKABLE void act(int action);

    /// Looks at the desktop again.
    void refresh() { _state = _read(); }

Q_SIGNALS:
    void changed();

private:
    Face _face;
    std::function<State()> _read;
    std::function<void(int)> _act;
    Q_OBJECT_BINDABLE_PROPERTY(PermissionCard, State, _state, &PermissionCard::changed)
};
