#pragma once

#include "prefs/Preference.h"

#include <QObject>
#include <QQmlEngine>

#include <functional>

/// A setting with a few values, as a control shows it: their names, and which of them is in force.
class ChoiceSetting : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QStringList names READ names NOTIFY namesChanged)
    Q_PROPERTY(int index READ index NOTIFY indexChanged)

public:
    /// `names` and `index` are functions of bindable properties.
    ChoiceSetting(std::function<QStringList()> names, std::function<int()> index,
                  std::function<void(int index)> choose);

    /// All cases of an enumeration, by their display names.
    template<typename Case>
    explicit ChoiceSetting(Preference<Case>& preference)
        : ChoiceSetting([] { return displayNames<Case>(); },
                        [&preference] { return static_cast<int>(preference.value()); },
                        [&preference](int index) { preference = Choices<Case>::all[index].value; })
    {
    }

    QStringList names() const { return _names; }
    int index() const { return _index; }

    /// Puts a case in force. A number that is none does nothing.
    Q_INVOKABLE void choose(int index);

Q_SIGNALS:
    void namesChanged();
    void indexChanged();

private:
    template<typename Case>
    static QStringList displayNames()
    {
        QStringList names;
        for (const auto& [value, raw, name] : Choices<Case>::all) {
            names << displayName(value);
        }
        return names;
    }

    std::function<void(int)> _choose;
    Q_OBJECT_BINDABLE_PROPERTY(ChoiceSetting, QStringList, _names, &ChoiceSetting::namesChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ChoiceSetting, int, _index, &ChoiceSetting::indexChanged)
};
