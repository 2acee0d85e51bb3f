#pragma once

#include "ui/track/TrackModel.h"

#include <QObject>

#include <functional>
#include <memory>

class Appearance;
class ClassicMenu;
class ContextMenu;
class KeyboardClaim;
class LyricsModel;
class PellarMenuPanel;
class PellarPreviewPanel;
class QMenu;
class QMouseEvent;
class QWindow;
struct Platform;

/// What opens at the pill: the context menu, in the style that the user has chosen, and the preview. Of the
/// panels only one is open at a time.
class Popups : public QObject
{
    Q_OBJECT

public:
    struct Dependencies {
        Platform& platform;
        Appearance& appearance;
        const ContextMenu& contextMenu;
        const QWindow& pill; ///< below which the panels open
        std::function<TrackModel::Dependencies()> track;
        std::function<LyricsModel&()> lyrics;
    };

    explicit Popups(Dependencies dependencies);
    ~Popups() override;

    /// The context menu as a menu of the desktop's kind.
    std::unique_ptr<QMenu> classicMenu() const;

    /// Puts the rows as of now into a menu.
    void buildMenu(ClassicMenu& menu) const;

    void presentRightClickMenu(const QMouseEvent& event);
    void togglePreview();

    /// Has an open menu show its rows as of now: headphones may come or go while their list is open.
    void refreshMenus();

Q_SIGNALS:
    /// The preview is gone and has not been opened again soon after.
    void previewClosed();

private:
    void presentClassicMenu(QPoint place);
    void presentGlassMenu();
    void openPreview();

    Dependencies _of;
    std::unique_ptr<QMenu> _classicMenu;
    std::unique_ptr<KeyboardClaim> _menuKeyboard;          ///< the classic menu's
    std::unique_ptr<PellarMenuPanel> _liveMenuPanel;       ///< while it exists
    std::unique_ptr<PellarPreviewPanel> _livePreviewPanel; ///< while it exists
};
