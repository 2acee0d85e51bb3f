#include "ui/preview/LyricsLayout.h"

#include <QFontMetricsF>
#include <QTextOption>

#include <algorithm>
#include <utility>

namespace {

/// Wraps a text to a width and centres its rows in a field. The height it takes, and the number of rows.
std::pair<double, int> wrap(QTextLayout& text, double width, double field)
{
    double height = 0;
    text.beginLayout();
    for (QTextLine row = text.createLine(); row.isValid(); row = text.createLine()) {
        row.setLineWidth(width);
        row.setPosition({(field - width) / 2, height});
        height += row.height();
    }
    text.endLayout();
    return {height, text.lineCount()};
}

/// Wraps a text so that its rows are about as long as each other: none is left with a word alone.
double wrapEvenly(QTextLayout& text, double field)
{
    constexpr double step = 6; // points
    auto [height, rows] = wrap(text, field, field);
    if (rows < 2) {
        return height;
    }
    double least = field / 2;
    const QStringList words = text.text().split(u' ');
    for (const QString& word : words) {
        const double length = QFontMetricsF(text.font()).horizontalAdvance(word);
        least = length <= field ? std::max(least, length) : least; // no word is broken for this
    }
    double width = field;
    while (width - step > least && wrap(text, width - step, field).second == rows) {
        width -= step;
    }
    return wrap(text, width, field).first;
}

} // namespace

LyricsLayout::LyricsLayout(const QStringList& lines, const QFont& font, double width)
{
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    double top = 0;
    for (const QString& line : lines) {
        auto text = std::make_unique<QTextLayout>(line, font);
        option.setTextDirection(line.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
        text->setTextOption(option);
        text->setCacheEnabled(true);
        const double height = wrapEvenly(*text, width);
        _lines.push_back({.text = std::move(text), .top = top, .height = height});
        top += height + gap;
    }
}

std::optional<int> LyricsLayout::lineAt(double y) const
{
    if (y < 0 || y >= height()) {
        return std::nullopt;
    }
    const auto below = std::find_if(_lines.begin(), _lines.end(),
                                    [y](const Line& line) { return y < line.top + line.height + gap / 2; });
    return static_cast<int>(below - _lines.begin());
}

QList<int> LyricsLayout::wordStarts(const QString& text, const QStringList& words)
{
    QList<int> starts;
    qsizetype end = 0;
    for (const QString& word : words) {
        const qsizetype found = text.indexOf(word, end);
        starts << static_cast<int>(found < 0 ? end : found);
        end = found < 0 ? end : found + word.size();
    }
    starts << static_cast<int>(text.size());
    return starts;
}
