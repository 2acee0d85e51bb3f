#pragma once

#include "app/Request.h"
#include "base/RunLoop.h"
#include "prefs/PellarShortcut.h"

#include <QObject>

#include <functional>

class NowPlayingService;
struct Platform;

/// Does what is asked for by the global hot keys, by the command line and by other programs.
class RequestHandler : public QObject
{
    Q_OBJECT

public:
    struct Dependencies {
        Platform& platform;
        NowPlayingService& service;
        std::function<void()> activate; ///< brings the pill to the front
        std::function<void()> togglePreview;
        std::function<void()> openSettings;
    };

    explicit RequestHandler(Dependencies dependencies);

    /// Listens from now on.
    void start();

    /// Playback waits until the players have had the time to tell of themselves, when the program has only
    /// just started.
    void perform(Request request);

private:
    void handleHotKey(PellarShortcut shortcut);
    void handleAction(const QString& action);
    void performLater(PellarShortcut shortcut);

    Dependencies _of;
    Uptime _started;
};
