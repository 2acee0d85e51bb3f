#pragma once

#include "ui/panel/Panel.h"
#include "ui/track/TrackModel.h"

/// The card below the pill that shows what plays: cover, scrub bar, buttons. Space closes it, too.
class PellarPreviewPanel : public Panel
{
    Q_OBJECT

public:
    PellarPreviewPanel(const Desktop& desktop, const TrackModel::Dependencies& shown, const QRect& pill);
    ~PellarPreviewPanel() override;

private:
    TrackModel _track;
};
