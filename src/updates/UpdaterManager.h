#pragma once

#include "base/HttpClient.h"
#include "base/RunLoop.h"
#include "prefs/Preference.h"
#include "updates/Appcast.h"

#include <QObject>

#include <memory>

class UpdateDownload;
class Workspace;

/// Looks for a newer version, two seconds after the start and once a day, and when the user asks. It offers
/// the newest one that fits, downloads and checks it, and hands it to what the desktop opens packages with.
/// What it is offered without a signature of the maker's, or in the open, it refuses.
class UpdaterManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAvailable READ isAvailable CONSTANT)
    Q_PROPERTY(bool automaticChecksEnabled READ automaticChecksEnabled WRITE automaticChecksEnabled BINDABLE
                   automaticChecksEnabled)
    Q_PROPERTY(State state READ state BINDABLE bindableState NOTIFY stateChanged)
    Q_PROPERTY(QString version READ version BINDABLE bindableVersion)
    Q_PROPERTY(QString notes READ notes BINDABLE bindableNotes)
    Q_PROPERTY(double progress READ progress BINDABLE bindableProgress)
    Q_PROPERTY(QString message READ message BINDABLE bindableMessage)

    UserDefaults& _defaults; // before the preferences, which take it

public:
    enum class State {
        idle,
        checking,    ///< and the user waits for it
        offered,     ///< there is a newer version
        downloading, ///< `progress` tells how far
        handedOver,  ///< the desktop has been asked to open the package
        upToDate,    ///< as an answer to the user
        failed       ///< as an answer to the user, `message` says why
    };
    Q_ENUM(State)

    /// What this build is and where its updates are. Without a secure address and a key of 32 bytes it has
    /// none.
    struct Build {
        QString feed;
        QByteArray publicKey;  ///< Ed25519
        QString version;       ///< that runs
        QString systemVersion; ///< empty when the system has no versions
        QString folder;        ///< for packages; emptied before each
    };
    struct Dependencies {
        UserDefaults& defaults;
        RunLoop& runLoop;
        Workspace& workspace;
    };

    UpdaterManager(const Dependencies& dependencies, Build build);
    ~UpdaterManager() override;
    static UpdaterManager& shared();

    /// Whether this build has updates at all.
    bool isAvailable() const;

    Preference<bool> automaticChecksEnabled{
        _defaults, QStringLiteral("com.orvalen.pellar.updates.automaticChecks"), true};

    State state() const { return _state; }
    QBindable<State> bindableState() { return &_state; }

    /// Of the version that is offered, as people know it.
    QString version() const { return _version; }
    QBindable<QString> bindableVersion() { return &_version; }

    /// Of the same, in plain text; may be empty.
    QString notes() const { return _notes; }
    QBindable<QString> bindableNotes() { return &_notes; }

    /// From 0 to 1.
    double progress() const { return _progress; }
    QBindable<double> bindableProgress() { return &_progress; }

    QString message() const { return _message; }
    QBindable<QString> bindableMessage() { return &_message; }

    /// For the user, who gets an answer in any case, and a version that was skipped or put off, too.
    Q_INVOKABLE void checkForUpdates();

    /// Without a word unless there is something to offer.
    void checkForUpdatesInBackground();

    // What can be done about an offer; without one they do nothing.
    Q_INVOKABLE void install();
    Q_INVOKABLE void skip();        ///< never offers this version by itself again
    Q_INVOKABLE void remindLater(); ///< in a day at the earliest

    /// Ends a check, a download, or an answer.
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void stateChanged();
    void askedFor(); ///< by the user, after what that has changed

private:
    void check(bool isAskedFor);
    void takeReply(const HttpReply& reply);
    void consider(const UpdateItem& item);
    QString fault(const UpdateItem& item) const;
    bool isPutOff(const UpdateItem& item) const;
    void offer(const UpdateItem& item);
    void handOver(const QString& path);
    void fail(const QString& why);
    void refuse(const QString& why);
    void answer(State state);

    RunLoop& _runLoop;
    Workspace& _workspace;
    Build _build;
    std::optional<HttpClient> _http; ///< once there is something to ask
    std::unique_ptr<HttpCall> _call; ///< while the feed is asked for
    std::unique_ptr<UpdateDownload> _download;
    std::unique_ptr<RunLoop::Timer> _daily;
    std::optional<UpdateItem> _offer;
    bool _isAskedFor = false; ///< by the user

    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(UpdaterManager, State, _state, State::idle,
                                         &UpdaterManager::stateChanged)
    QProperty<QString> _version;
    QProperty<QString> _notes;
    QProperty<double> _progress;
    QProperty<QString> _message;
};
