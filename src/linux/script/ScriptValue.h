#pragma once

#include <QList>
#include <QString>

#include <concepts>
#include <memory>
#include <utility>
#include <variant>

class ScriptObject;
struct ScriptValue;

/// A word of an application's vocabulary used as a value: `playing`, `command down`.
struct ScriptConstant {
    QString name; ///< lower case, words separated by one space

    friend bool operator==(const ScriptConstant&, const ScriptConstant&) = default;
};

using ScriptList = QList<ScriptValue>;

/// A value of the scripting language. The empty alternative is "no value".
struct ScriptValue {
    using Data = std::variant<std::monostate, bool, qlonglong, double, QString, ScriptConstant, ScriptList,
                              std::shared_ptr<ScriptObject>>;
    Data data;

    ScriptValue() = default;
    template<typename T>
    requires std::constructible_from<Data, T> ScriptValue(T value) : data(std::move(value)) {}
};
