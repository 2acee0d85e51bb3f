#include "app/RequestHandler.h"

#include "base/DebugLog.h"
#include "engine/NowPlayingService.h"
#include "platform/Platform.h"
#include "platform/RemoteRequests.h"
#include "prefs/GlobalShortcuts.h"

#include <QCoreApplication>

#include <algorithm>

RequestHandler::RequestHandler(Dependencies dependencies)
    : _of(std::move(dependencies))
    , _started(_of.platform.runLoop.uptime())
{
}

void RequestHandler::start()
{
    connect(&GlobalShortcuts::shared(), &GlobalShortcuts::pressed, this, &RequestHandler::handleHotKey);
    connect(&_of.platform.remoteRequests, &RemoteRequests::activated, this, _of.activate);
    connect(&_of.platform.remoteRequests, &RemoteRequests::actionRequested, this,
            &RequestHandler::handleAction);
}

void RequestHandler::handleAction(const QString& action)
{
    if (const auto request = withRawValue<Request>(action)) {
        perform(*request);
    } else {
        dlog(QStringLiteral("Requests: \"%1\" is not known").arg(action));
    }
}

void RequestHandler::perform(Request request)
{
    switch (request) {
    case Request::playPause:
        performLater(PellarShortcut::playPause);
        break;
    case Request::next:
        performLater(PellarShortcut::nextTrack);
        break;
    case Request::previous:
        performLater(PellarShortcut::previousTrack);
        break;
    case Request::togglePreview:
        _of.togglePreview();
        break;
    case Request::settings:
        _of.openSettings();
        break;
    case Request::quit:
        QCoreApplication::quit();
        break;
    }
}

void RequestHandler::performLater(PellarShortcut shortcut)
{
    constexpr double settling = 1; // seconds
    const double age = _of.platform.runLoop.uptime() - _started;
    _of.platform.runLoop.after(std::max(0.0, settling - age), this,
                               [this, shortcut] { handleHotKey(shortcut); });
}

void RequestHandler::handleHotKey(PellarShortcut shortcut)
{
    switch (shortcut) {
    case PellarShortcut::playPause:
        _of.service.togglePlayPause();
        break;
    case PellarShortcut::nextTrack:
        _of.service.nextTrack();
        break;
    case PellarShortcut::previousTrack:
        _of.service.previousTrack();
        break;
    }
}
