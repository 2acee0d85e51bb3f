#include "linux/mpris/PlayerChange.h"

namespace {

// Seconds.
constexpr double noRest = 0; // what tells all of a track at once is followed by nothing
constexpr double ordinaryRest = 0.01;
constexpr double incompleteTrackRest = 0.1; // artist and length often follow the title
constexpr double betweenTracksRest = 0.15;  // players say "Stopped", or show no title, between two tracks

bool isOther(const QString& before, const QString& after)
{
    return before != after && !before.isEmpty();
}

} // namespace

bool PlayerChange::isOtherTrack() const
{
    const MprisTrack& was = before.track;
    const MprisTrack& is = after.track;
    const bool isSameFile = was.id == is.id && !is.id.isEmpty() && was.location == is.location &&
                            is.location.startsWith(QStringLiteral("file:"));
    if (isSameFile) {
        return false; // whose title has come after its name
    }
    return was.title != is.title || isOther(was.id, is.id) || isOther(was.artist, is.artist) ||
           isOther(was.album, is.album);
}

bool PlayerChange::isNews() const
{
    const MprisTrack& was = before.track;
    const MprisTrack& is = after.track;
    return before.status != after.status || was.id != is.id || was.title != is.title ||
           was.artist != is.artist || was.album != is.album;
}

bool PlayerChange::isMoreThanNews() const
{
    const MprisTrack& was = before.track;
    const MprisTrack& is = after.track;
    const bool isOver = after.status == MprisPlayer::Status::stopped || is.isBlank();
    return isOver || (was.title == is.title && was.artist == is.artist && was != is);
}

double PlayerChange::rest() const
{
    using Status = MprisPlayer::Status;
    const bool isBetweenTracks =
        before.status == Status::playing && (after.status == Status::stopped || after.track.isBlank());
    if (isBetweenTracks || (after.status == Status::playing && after.track.isBlank())) {
        return betweenTracksRest;
    }
    const bool isNewId = before.track.id != after.track.id;
    const bool isNewTitle = before.track.title != after.track.title;
    if ((isNewId || isNewTitle) && !after.track.isComplete()) {
        return incompleteTrackRest;
    }
    return isNewId && isNewTitle ? noRest : ordinaryRest;
}
