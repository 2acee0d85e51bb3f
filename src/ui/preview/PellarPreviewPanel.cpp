#include "ui/preview/PellarPreviewPanel.h"

#include "ui/lyrics/LyricsModel.h"
#include "ui/preview/PreviewPlacement.h"

#include <QQuickView>
#include <QUrl>

namespace {

const PanelStyle& style()
{
    static const PanelStyle style{.title = QStringLiteral("Pellar Preview"),
                                  .cornerRadius = 22,
                                  .placement = &previewPlacement,
                                  .opening = {.first = {0.22, 1.2}, .second = {0.36, 1}, .seconds = 0.45},
                                  .closing = {.first = {0.5, 0}, .second = {0.75, 0}, .seconds = 0.3},
                                  .closingKeys = {Qt::Key_Escape, Qt::Key_Space}};
    return style;
}

} // namespace

PellarPreviewPanel::PellarPreviewPanel(const Desktop& desktop, const TrackModel::Dependencies& shown,
                                       LyricsModel& lyrics, const QRect& pill)
    : Panel(desktop, style(), pill)
    , _track(shown)
{
    setView(QUrl(QStringLiteral("qrc:/Pellar/Preview/PellarPreviewView.qml")),
            {{QStringLiteral("track"), QVariant::fromValue(&_track)},
             {QStringLiteral("lyrics"), QVariant::fromValue(&lyrics)}});
}

/// The view goes before what it shows.
PellarPreviewPanel::~PellarPreviewPanel()
{
    view().setSource({});
}
