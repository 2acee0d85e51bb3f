#pragma once

#include "platform/UserDefaults.h"

/// Sets a published flag to what is stored; keeps its default where there is no boolean under the key.
template<typename Flag>
void loadFlag(const UserDefaults& defaults, const QString& key, Flag& flag)
{
    if (const auto stored = defaults.boolean(key)) {
        flag = *stored;
    }
}

/// Stores a value, also one that the flag has already, and publishes it.
template<typename Flag>
void assignFlag(UserDefaults& defaults, const QString& key, Flag& flag, bool value)
{
    defaults.setObject(key, value);
    flag = value;
}
