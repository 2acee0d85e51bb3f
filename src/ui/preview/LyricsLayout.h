#pragma once

#include <QFont>
#include <QTextLayout>

#include <memory>
#include <optional>
#include <vector>

/// Lines of a song below each other, each wrapped to a width and centred. Lengths are in points.
class LyricsLayout
{
public:
    static constexpr double gap = 10; ///< between the lines of the song

    /// One line of the song.
    struct Line {
        std::unique_ptr<QTextLayout> text;
        double top = 0;
        double height = 0;

        double middle() const { return top + height / 2; }
    };

    LyricsLayout() = default;
    LyricsLayout(const QStringList& lines, const QFont& font, double width);

    const std::vector<Line>& lines() const { return _lines; }
    double height() const { return _lines.empty() ? 0 : _lines.back().top + _lines.back().height; }

    /// The line at a height; none above the first and below the last. What lies between two belongs to the
    /// nearer one.
    std::optional<int> lineAt(double y) const;

    /// The place where each word begins in a text, in the order given, then the text's length. A word that is
    /// not found is taken to begin where the one before ended.
    static QList<int> wordStarts(const QString& text, const QStringList& words);

private:
    std::vector<Line> _lines;
};
