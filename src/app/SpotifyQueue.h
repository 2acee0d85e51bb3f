#pragma once

#include "prefs/UpNextTrack.h"

#include <QObject>

#include <functional>

class NotificationCenter;
class SpotifyAPI;

/// What comes next at Spotify, for as long as an account is connected. The account is looked up in the
/// keyring when Spotify plays for the first time, and not before.
class SpotifyQueue : public QObject
{
    Q_OBJECT

public:
    /// `isShown` tells whether Spotify is what is shown.
    SpotifyQueue(std::function<bool()> isShown, NotificationCenter& notifications);

    bool isAuthorized();

    /// Asks the service anew.
    void refresh();

    /// Does so if Spotify is what is shown and an account is connected.
    void refreshIfShown();

    /// What the service said last.
    QList<UpNextTrack> tracks();

Q_SIGNALS:
    /// Other tracks come next, or it is no longer known which.
    void changed();

private:
    SpotifyAPI& api();
    void accountChanged();

    std::function<bool()> _isShown;
    bool _followsAccount = false;
};
