#pragma once

#include "prefs/StoredForm.h"

#include <QProperty>

/// One choice of the user's: a property that is kept under a key of the settings. What cannot be read there
/// is logged and leaves the fallback in force until the first write; nothing is written before that.
///
/// A manager has one as a public member. C++ reads, assigns, binds to and subscribes to it as to any
/// QProperty; so that QML can, too, the manager names the member as all three of a property's functions:
///
///     Q_PROPERTY(bool showTitle READ showTitle WRITE showTitle BINDABLE showTitle)
///     Preference<bool> showTitle{_defaults, QStringLiteral("pellar.pill.showTitle"), true};
template<typename T>
class Preference : public QProperty<T>
{
public:
    Preference(UserDefaults& defaults, QString key, T fallback)
        : QProperty<T>(readStored(defaults, key, std::move(fallback)))
        , _defaults(defaults)
        , _key(std::move(key))
    {
    }
    ~Preference() = default;
    Preference(const Preference&) = delete;

    /// Stores a value, also one that the preference has already, then publishes it.
    void setValue(const T& value)
    {
        _defaults.setObject(_key, StoredForm<T>::of(value));
        QProperty<T>::setValue(value);
    }

    // NOLINTNEXTLINE(misc-unconventional-assign-operator): as that of QProperty, which takes a value
    Preference& operator=(const T& value)
    {
        setValue(value);
        return *this;
    }
    Preference& operator=(const Preference&) = delete;

    // What the generated code of a Q_PROPERTY calls.
    const Preference& operator()() const { return *this; }
    Preference& operator()() { return *this; }
    void operator()(const T& value) { setValue(value); }
    operator QUntypedBindable() { return QBindable<T>(this); }

private:
    UserDefaults& _defaults;
    QString _key;
};
