#pragma once

#include "accounts/AppleMusicAuthLoopback.h"
#include "accounts/AuthResult.h"

#include <QProcess>
#include <QUrl>

class Appearance;

/// The window in which the user signs in at Apple Music. Its web view is a program of its own, which is
/// started for the purpose: the two talk in lines of JSON on that program's standard input and output, so
/// that the developer token and the user's are in no command line and no environment.
class AppleMusicAuthWindow : public QObject
{
    Q_OBJECT

public:
    struct Dependencies {
        RunLoop& runLoop;
        Appearance& appearance;
        QString musicKit; ///< the web service that the page loads MusicKit JS from
        QString program;  ///< the path of the companion
    };

    /// `onResult` is called once at most, and may dismiss the window.
    AppleMusicAuthWindow(Dependencies dependencies, QString developerToken,
                         std::function<void(const AuthResult&)> onResult);

    /// The companion as it is installed, beside this program.
    static QString installedProgram();

    /// Serves the page and has it loaded as soon as the web view is there.
    void loadAuthPage();
    bool didLoadPage() const { return _didLoadPage; }

    /// Brings the window to the front; starts the companion if it does not run.
    void present();

    /// Hides the window and reports nothing from now on. It deletes itself when the companion has ended.
    void dismiss();

private:
    void start();
    void readLines();
    void readErrors();
    void handle(const QJsonObject& message);
    void sendPage();
    void send(const QJsonObject& message);
    void ended();
    void report(const AuthResult& result);

    Dependencies _from;
    QString _developerToken;
    std::function<void(const AuthResult&)> _onResult;
    AppleMusicAuthLoopback _loopback;
    QProcess _companion;
    QUrl _page;
    bool _isReady = false; ///< the web view is there
    bool _didLoadPage = false;
    bool _didFinish = false;
};
