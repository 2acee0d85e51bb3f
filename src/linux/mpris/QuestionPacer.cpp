#include "linux/mpris/QuestionPacer.h"

#include "base/RunLoop.h"

#include <utility>

namespace {

constexpr double answerAge = 1; // seconds for which an answer is good enough
constexpr double rest = 0.1;    // seconds between two questions
constexpr double doubtRest = 0.2;

} // namespace

QuestionPacer::QuestionPacer(RunLoop& runLoop, QObject* parent) : QObject(parent), _runLoop(runLoop) {}

void QuestionPacer::ask()
{
    if (_isAsking) {
        _isWanted = true;
        return;
    }
    const Uptime now = _runLoop.uptime();
    if (now - _asked < rest) {
        if (!std::exchange(_isResting, true)) {
            _runLoop.after(rest, this, [this] {
                _isResting = false;
                ask();
            });
        }
        return;
    }
    _isAsking = true;
    _isWanted = false;
    _asked = now;
    Q_EMIT due();
}

void QuestionPacer::askLater(double seconds)
{
    const Uptime time = _runLoop.uptime() + seconds;
    if (time <= _laterDue) {
        return;
    }
    _laterDue = time;
    _runLoop.after(seconds, this, [this, time] {
        if (time == _laterDue) {
            _laterDue = Uptime::distantPast();
            ask();
        }
    });
}

void QuestionPacer::askIfOld()
{
    const double age = _runLoop.uptime() - _answered;
    if (age > answerAge) {
        ask();
    } else {
        askLater(answerAge - age);
    }
}

void QuestionPacer::askInDoubt()
{
    if (std::exchange(_isCheckDue, true)) {
        return;
    }
    _runLoop.after(doubtRest, this, [this] {
        _isCheckDue = false;
        ask();
    });
}

void QuestionPacer::retry()
{
    if (const auto delay = _backoff.next()) {
        _runLoop.after(*delay, this, [this, round = ++_retryRound] {
            if (round == _retryRound) {
                ask();
            }
        });
    }
}

void QuestionPacer::stopRetrying()
{
    _backoff.reset();
    ++_retryRound;
}

void QuestionPacer::answered()
{
    _isAsking = false;
    _answered = _runLoop.uptime();
}

void QuestionPacer::askIfWanted()
{
    if (_isWanted) {
        ask();
    }
}
