#pragma once

#include <QString>

#include <optional>

class RunLoop;

/// Who the program is to Apple Music: its account's identifiers and key, and the token that they make.
class AppleMusicCredentials
{
public:
    /// Of the build; a key that was never filled in says "REPLACE_WITH_KEY_ID".
    static QString builtInTeamID();
    static QString builtInKeyID();

    AppleMusicCredentials(const RunLoop& clock, QString teamID, QString keyID);

    /// The token, minted by the first call that can, for 90 days, and kept from then on. None, and a line in
    /// the log, when there is no key.
    std::optional<QString> developerToken();

    /// The text of the key file, "Pellar_MusicKit.p8", of the program's resources or else of the working
    /// folder.
    static std::optional<QString> loadP8();

private:
    const RunLoop& _clock;
    QString _teamID;
    QString _keyID;
    std::optional<QString> _developerToken;
};
