import QtQuick
import Pellar.Settings

SettingsPage {
    id: root

    required property SettingsModel settings
    readonly property SpotifyAuthManager spotify: settings.spotify
    readonly property AppleMusicAuthManager appleMusic: settings.appleMusic

    title: settings.tabNames[3]
    subtitle: qsTr("Connect streaming services for richer playback metadata.")

    Section {
        AccountRow {
            symbol: "headphones"
            tint: "#229e53"
            name: qsTr("Spotify")
            note: qsTr("Enables the Up Next queue when Spotify is the active player, plus track-link copying for Spotify tracks. Uses OAuth with PKCE — your credentials never touch Pellar directly.")
            status: {
                if (!root.spotify.isConfigured)
                    return ""
                if (root.spotify.isAuthorized)
                    return qsTr("Pellar has read access to your queue.")
                return root.spotify.isAuthorizing ? qsTr("Waiting for your answer in the browser…")
                                                  : qsTr("Click Connect to authorize via Spotify's website.")
            }
            fault: root.spotify.isConfigured ? root.spotify.lastError
                                             : qsTr("This build of Pellar doesn't ship with a Spotify Client ID. Account connection is disabled.")
            isConnected: root.spotify.isAuthorized
            action: !root.spotify.isConfigured ? "" : isConnected ? qsTr("Disconnect") : qsTr("Connect")
            onActed: {
                if (isConnected)
                    root.spotify.disconnect()
                else
                    root.spotify.startAuthorization()
            }
        }
    }
    Section {
        AccountRow {
            symbol: "music.note"
            tint: "#e24a62"
            name: qsTr("Apple Music")
            note: qsTr("Signs in with your Apple ID, in a window of Apple's own page. Pellar keeps only the token that Apple hands out.")
            status: {
                if (root.appleMusic.isAuthorized)
                    return qsTr("Your Apple Music account is connected.")
                return root.appleMusic.isAuthorizing ? qsTr("Waiting for you in the sign-in window…") : ""
            }
            fault: root.appleMusic.lastError
            isConnected: root.appleMusic.isAuthorized
            action: isConnected ? qsTr("Disconnect") : qsTr("Connect Apple Music")
            onActed: {
                if (isConnected)
                    root.appleMusic.disconnect()
                else
                    root.appleMusic.connectAccount()
            }
        }
    }
    StatusLine {
        width: parent.width
        text: root.settings.keychain.keepsSecrets ? ""
              : qsTr("Your desktop's keyring is locked or not there. What you connect now has to be connected again after the next start.")
        symbol: "exclamationmark.circle"
        color: Look.colors.warning
    }
}
