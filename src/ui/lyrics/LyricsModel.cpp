#include "ui/lyrics/LyricsModel.h"

#include "engine/NowPlayingService.h"
#include "lyrics/LyricsService.h"

#include <utility>

namespace {

constexpr qsizetype mostLines = 2000;
constexpr qsizetype longestLine = 300; // characters
constexpr double grace = 0.001; // seconds of the track: a timer that fires a little early need not fire twice

QString cut(const QString& line)
{
    return line.size() > longestLine ? line.first(longestLine) + u'…' : line;
}

QStringList linesOf(const QString& text)
{
    QStringList lines;
    if (!text.isEmpty()) {
        for (const QStringView line : QStringTokenizer(text, u'\n')) {
            if (lines.size() == mostLines) {
                break;
            }
            lines << cut(line.toString());
        }
    }
    return lines;
}

} // namespace

LyricsModel::LyricsModel(const Dependencies& dependencies)
    : _of(dependencies)
    , _demand(dependencies.service, dependencies.lyrics)
{
    connect(&_of.lyrics, &LyricsService::currentChanged, this, &LyricsModel::takeLyrics);
    connect(&_of.lyrics, &LyricsService::isLoadingChanged, this, &LyricsModel::placeholderChanged);
    connect(&_of.service, &NowPlayingService::clockChanged, this, &LyricsModel::follow);
    connect(&_demand, &LyricsDemand::isShownChanged, this, &LyricsModel::follow);
    takeLyrics();
}

int LyricsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(_lines.size());
}

QVariant LyricsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const SyncedLyric& line = _lines[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return cut(shownText(line));
    case WordsRole: {
        QStringList words;
        for (const LyricWord& word : line.words.value_or(QList<LyricWord>())) {
            words << word.text;
        }
        return words;
    }
    default:
        return {};
    }
}

QString LyricsModel::placeholder() const
{
    return lyricsPlaceholder(_of.lyrics.current(), _of.lyrics.isLoading()).value_or(QString());
}

void LyricsModel::seekToLine(int row)
{
    if (row >= 0 && row < _lines.size()) {
        _of.service.seekTo(_lines[row].time);
    }
}

void LyricsModel::takeLyrics()
{
    const auto current = _of.lyrics.current();
    const QList<SyncedLyric> lines = current ? current->synced.mid(0, mostLines) : QList<SyncedLyric>();
    const QStringList plainLines =
        linesOf(current ? current->plain.value_or(QString()).trimmed() : QString());
    const bool isOther = lines != _lines;
    const bool isOtherPlain = std::exchange(_plainLines, plainLines) != plainLines;
    if (isOther) {
        beginResetModel();
        _lines = lines;
        _sung = {};
        endResetModel();
        Q_EMIT activeIndexChanged();
        Q_EMIT activeWordChanged();
    }
    follow(); // first, so that a view finds the line of other lyrics that is sung
    if (isOther || isOtherPlain) {
        Q_EMIT lyricsChanged();
    }
    Q_EMIT placeholderChanged();
}

/// Finds out what is sung now and wakes up when that changes, if anybody looks.
void LyricsModel::follow()
{
    _change.reset();
    if (!_demand.isShown()) {
        return;
    }
    const Uptime now = _of.runLoop.uptime();
    const TrackClock clock = _of.service.clock();
    setSung(sungSoFar(_lines, clock.reckoned(now) + grace));
    if (const auto wait = _sung.next ? clock.until(*_sung.next, now) : std::nullopt) {
        _change = _of.runLoop.once(*wait, this, [this] {
            _of.service.checkPosition(); // while awake anyway
            follow();
        });
    }
}

void LyricsModel::setSung(const SungSoFar& sung)
{
    const int before = activeIndex();
    const bool isOtherWord = sung.words != _sung.words || sung.line != _sung.line;
    _sung = sung;
    if (activeIndex() != before) {
        Q_EMIT activeIndexChanged();
    }
    if (isOtherWord) {
        Q_EMIT activeWordChanged();
    }
}
