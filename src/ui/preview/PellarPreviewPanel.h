#pragma once

#include "ui/panel/Panel.h"
#include "ui/track/TrackModel.h"

class LyricsModel;

/// The card below the pill that shows what plays: cover, scrub bar, buttons, lyrics. Space closes it, too.
class PellarPreviewPanel : public Panel
{
    Q_OBJECT

public:
    /// The lyrics outlive the panel.
    PellarPreviewPanel(const Desktop& desktop, const TrackModel::Dependencies& shown, LyricsModel& lyrics,
                       const QRect& pill);
    ~PellarPreviewPanel() override;

private:
    TrackModel _track;
};
