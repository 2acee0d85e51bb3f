#pragma once

#include "base/Uptime.h"
#include "linux/dbus/Backoff.h"

#include <QObject>

class RunLoop;

/// Decides when a player is asked what it shows: one question at a time, and never two within a tenth of a
/// second, however many reasons there are to ask.
class QuestionPacer : public QObject
{
    Q_OBJECT

public:
    QuestionPacer(RunLoop& runLoop, QObject* parent);

    /// As soon as it may be.
    void ask();

    /// Once, at the latest of the times requested: an answer before that may still be out of date.
    void askLater(double seconds);

    /// Unless the last answer is good enough; then when it no longer is.
    void askIfOld();

    /// Soon, for as long as an answer is in doubt.
    void askInDoubt();

    /// After a question without a proper answer: a player may take its name before it can answer, or be
    /// permitted later. Each time it is waited longer, and given up in the end.
    void retry();

    /// Forgets the retries so far, and one that is due.
    void stopRetrying();

    /// To be called when an answer has come, and once it has been read.
    void answered();
    void askIfWanted();

Q_SIGNALS:
    /// The question is to be sent now.
    void due();

private:
    RunLoop& _runLoop;
    bool _isAsking = false;
    bool _isWanted = false;  ///< what is on its way may be out of date
    bool _isResting = false; ///< between two questions
    bool _isCheckDue = false;
    Uptime _asked = Uptime::distantPast();
    Uptime _answered = Uptime::distantPast();
    Uptime _laterDue = Uptime::distantPast();
    Backoff _backoff;
    int _retryRound = 0;
};
