#pragma once

#include "base/HttpClient.h"
#include "prefs/Preference.h"

#include <QObject>

/// An anonymous request, at most one a day, that says only that this install is alive.
class AnalyticsManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isOptedOut READ isOptedOut WRITE setOptedOut BINDABLE bindableIsOptedOut)

public:
    static const QString installIdKey;
    static const QString lastPingKey;
    static const QString optOutKey;

    /// `endpoint` is the whole address that takes the request; without one nothing is ever sent.
    AnalyticsManager(UserDefaults& defaults, RunLoop& runLoop, QString endpoint, QString version);
    static AnalyticsManager& shared();

    bool isOptedOut() const { return _isOptedOut; }
    QBindable<bool> bindableIsOptedOut() { return &_isOptedOut; }

    /// Whoever agrees again is counted at the next start.
    void setOptedOut(bool isOptedOut);

    /// A random UUID in lower case, made when it is first asked for.
    QString installId();

    /// Sends the request if a day has gone by since the last one was tried. That time is stored before the
    /// request is made: one that fails is not repeated the same day. Nothing depends on the answer.
    void pingIfNeeded();

private:
    void sendPing();

    UserDefaults& _defaults;
    RunLoop& _runLoop;
    QString _endpoint;
    QString _version;
    Preference<bool> _isOptedOut{_defaults, optOutKey, false};
    std::optional<HttpClient> _http; ///< once there is something to ask
    std::unique_ptr<HttpCall> _call;
};
