#pragma once

#include "base/RunLoop.h"
#include "lyrics/Lyrics.h"
#include "ui/lyrics/LyricsDemand.h"

#include <QAbstractListModel>
#include <QQmlEngine>

#include <memory>

class LyricsService;
class NowPlayingService;

/// The lines of the track that plays, and which of them is sung now. What is too long for any song, as files
/// and services may hold, is cut: to set it would take seconds. One for all views: each says with
/// `setShown` when it shows lyrics, and while none does nothing is looked up and nothing runs.
class LyricsModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(int activeIndex READ activeIndex NOTIFY activeIndexChanged)
    Q_PROPERTY(QString activeText READ activeText NOTIFY activeIndexChanged)
    Q_PROPERTY(int activeWord READ activeWord NOTIFY activeWordChanged)
    Q_PROPERTY(bool isSynced READ isSynced NOTIFY lyricsChanged)
    Q_PROPERTY(QString placeholder READ placeholder NOTIFY placeholderChanged)
    Q_PROPERTY(bool isPlain READ isPlain NOTIFY lyricsChanged)

public:
    /// What the model builds on. Everything outlives it.
    struct Dependencies {
        NowPlayingService& service;
        LyricsService& lyrics;
        RunLoop& runLoop;
    };

    /// A row's text, as a view shows it with a note for an empty line, is its display role.
    enum Role {
        WordsRole = Qt::UserRole ///< the texts of its words; empty when they have no times
    };

    explicit LyricsModel(const Dependencies& dependencies);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// The row of the line that is sung; -1 before the first.
    int activeIndex() const { return static_cast<int>(_sung.line.value_or(-1)); }
    /// That line, as a view shows it; empty before the first.
    QString activeText() const { return _sung.line ? index(activeIndex()).data().toString() : QString(); }
    /// How many words of that line have begun; 0 when they have no times.
    int activeWord() const { return static_cast<int>(_sung.words); }
    /// Whether there are lines.
    bool isSynced() const { return !_lines.isEmpty(); }
    /// What to show in place of lines; empty when there are lines.
    QString placeholder() const;
    /// Whether there is a text without times, and no other.
    bool isPlain() const { return !isSynced() && !_plainLines.isEmpty(); }
    /// The lines of that text.
    QStringList plainLines() const { return _plainLines; }

    /// Goes to where a line begins. Nothing for a row that there is not.
    Q_INVOKABLE void seekToLine(int row);

    /// Says whether a view shows the lines. One that is destroyed does not.
    Q_INVOKABLE void setShown(QObject* view, bool isShown) { _demand.setShown(view, isShown); }

Q_SIGNALS:
    void activeIndexChanged();
    void activeWordChanged();
    /// There are other lines, with times or without.
    void lyricsChanged();
    void placeholderChanged();

private:
    void takeLyrics();
    void follow();
    void setSung(const SungSoFar& sung);

    Dependencies _of;
    LyricsDemand _demand;
    QList<SyncedLyric> _lines;
    QStringList _plainLines;
    SungSoFar _sung;
    std::unique_ptr<RunLoop::Timer> _change; ///< of the line or the word; none while there is none to come
};
