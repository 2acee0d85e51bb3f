#pragma once

#include "engine/Player.h"

#include <QString>

class UserDefaults;

/// The text that "Copy Song Link" puts on the clipboard: the address of a search for the track in the
/// player's web edition; without a player, "title - artist".
QString songLink(Player player, const QString& title, const QString& artist, const UserDefaults& defaults);
