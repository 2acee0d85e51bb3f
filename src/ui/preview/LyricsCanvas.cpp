#include "ui/preview/LyricsCanvas.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double glideSeconds = 0.45;
constexpr double lightSeconds = 0.25; // that a line takes to light up
constexpr double wordSeconds = 0.15;
constexpr double fadeHeight = 34; // points
constexpr double plateInset = 10; // points
constexpr double plateCorner = 8; // points
constexpr int smoothRate = 60;    // frames per second
constexpr int waitingRate = 5;    // looks at the clock per second, while somebody looks further

double eased(double share)
{
    const double x = std::clamp(share, 0.0, 1.0);
    return x * x * (3 - 2 * x);
}

QColor between(const QColor& from, const QColor& to, double share)
{
    const auto mix = [share](float a, float b) { return a + (b - a) * static_cast<float>(share); };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

} // namespace

LyricsCanvas::LyricsCanvas(QQuickItem* parent) : MovingItem(parent), _place(glideSeconds)
{
    connect(this, &LyricsCanvas::fontChanged, this, &LyricsCanvas::relayout);
    connect(this, &LyricsCanvas::colorChanged, this, [this] { update(); });
}

LyricsCanvas::~LyricsCanvas() = default;

double LyricsCanvas::inset() const
{
    return plateInset;
}

void LyricsCanvas::setModel(LyricsModel* model)
{
    if (model == _model) {
        return;
    }
    if (_model != nullptr) {
        _model->disconnect(this);
    }
    _model = model;
    if (_model != nullptr) {
        connect(_model, &LyricsModel::lyricsChanged, this, &LyricsCanvas::relayout);
        connect(_model, &LyricsModel::activeIndexChanged, this, &LyricsCanvas::followLine);
        connect(_model, &LyricsModel::activeWordChanged, this, &LyricsCanvas::followWord);
    }
    relayout();
    Q_EMIT modelChanged();
}

void LyricsCanvas::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    MovingItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        relayout();
    }
}

/// Of other lyrics, or in another size: nothing glides.
void LyricsCanvas::relayout()
{
    QStringList lines;
    if (_model != nullptr && _model->isSynced()) {
        for (int row = 0; row < _model->rowCount(); ++row) {
            lines << _model->index(row).data().toString();
        }
    } else if (_model != nullptr) {
        lines = _model->plainLines();
    }
    const double room = width() - 2 * plateInset;
    _layout = room > 0 ? LyricsLayout(lines, font(), room) : LyricsLayout();
    _turned.reset();
    setPointedRow(-1);
    followLine();
    _activeSince = _wordSince = Uptime::distantPast();
    _place.jump(songPlace());
    followPointer();
    follow();
}

void LyricsCanvas::followLine()
{
    const bool isSynced = _model != nullptr && _model->isSynced();
    const int rows = static_cast<int>(_layout.lines().size());
    _lastActiveRow =
        std::exchange(_activeRow, isSynced && _model->activeIndex() < rows ? _model->activeIndex() : -1);
    _activeSince = now();
    _wordStarts.clear();
    if (_activeRow >= 0) {
        const QModelIndex index = _model->index(_activeRow);
        const QStringList words = index.data(LyricsModel::WordsRole).toStringList();
        if (!words.isEmpty()) {
            _wordStarts = LyricsLayout::wordStarts(index.data().toString(), words);
        }
    }
    followWord();
    if (!_turned) {
        _place.setGoal(songPlace(), now());
    }
    follow();
}

void LyricsCanvas::followWord()
{
    _litWords = _model != nullptr ? _model->activeWord() : 0;
    _wordSince = now();
    follow();
}

/// Where the song is: in the middle of its line, and a text without times begins at its beginning.
double LyricsCanvas::songPlace() const
{
    if (_layout.lines().empty()) {
        return 0;
    }
    if (_model == nullptr || !_model->isSynced()) {
        return placed(0);
    }
    return _layout.lines()[static_cast<std::size_t>(std::max(0, _activeRow))].middle();
}

/// The height in the item where the song's line lies.
double LyricsCanvas::anchor() const
{
    return height() * 0.42;
}

/// A place that somebody wants to look at, kept within the text.
double LyricsCanvas::placed(double place) const
{
    if (_layout.lines().empty()) {
        return 0;
    }
    if (_model != nullptr && _model->isSynced()) {
        return std::clamp(place, _layout.lines().front().middle(), _layout.lines().back().middle());
    }
    const double first = anchor() - fadeHeight * 0.8;
    return std::clamp(place, first,
                      std::max(first, _layout.height() - (height() - anchor()) + fadeHeight * 0.8));
}

void LyricsCanvas::lookAt(double place)
{
    _turned = now();
    _place.setGoal(placed(place), now());
    follow();
}

void LyricsCanvas::turn(double way)
{
    lookAt(_place.goal() + way);
}

void LyricsCanvas::step(int lines)
{
    const int rows = static_cast<int>(_layout.lines().size());
    if (rows == 0) {
        return;
    }
    if (_model == nullptr || !_model->isSynced()) {
        turn(lines * _layout.lines().front().height);
        return;
    }
    _pointer.reset();
    const int from = _pointedRow >= 0 ? _pointedRow : std::max(0, _activeRow);
    setPointedRow(std::clamp(from + lines, 0, rows - 1));
    lookAt(_layout.lines()[static_cast<std::size_t>(_pointedRow)].middle());
}

void LyricsCanvas::backToSong()
{
    _turned.reset();
    setPointedRow(-1);
    if (_model != nullptr && _model->isSynced()) {
        _place.setGoal(songPlace(), now());
    }
    follow();
}

void LyricsCanvas::point(double y)
{
    _pointer = y;
    followPointer();
}

void LyricsCanvas::leave()
{
    _pointer.reset();
    setPointedRow(-1);
}

void LyricsCanvas::followPointer()
{
    if (_pointer) {
        const bool isSynced = _model != nullptr && _model->isSynced();
        setPointedRow(isSynced ? _layout.lineAt(*_pointer - anchor() + _place.at(now())).value_or(-1) : -1);
    }
}

void LyricsCanvas::choose()
{
    if (_model != nullptr && _pointedRow >= 0) {
        const int row = _pointedRow;
        backToSong();
        _model->seekToLine(row);
    }
}

void LyricsCanvas::setPointedRow(int row)
{
    if (row != std::exchange(_pointedRow, row)) {
        update();
        Q_EMIT pointedRowChanged();
    }
}

/// That of a glide as long as something moves; it looks at the clock as long as somebody looks further.
int LyricsCanvas::frameRate() const
{
    const Uptime time = now();
    const bool isMoving = _place.isMoving(time) || time - _activeSince < lightSeconds ||
                          (!_wordStarts.isEmpty() && time - _wordSince < wordSeconds);
    return isMoving ? smoothRate : _turned ? waitingRate : 0;
}

void LyricsCanvas::advance()
{
    if (_turned && now() - *_turned >= restSeconds) {
        backToSong();
    } else {
        follow();
    }
    followPointer();
}

/// How much a line is lit, 0 to 1.
double LyricsCanvas::lit(int row) const
{
    const double share = eased((now() - _activeSince) / lightSeconds);
    if (row == _activeRow) {
        return share;
    }
    return row == _lastActiveRow ? 1 - share : 0;
}

/// The words of the active line that have been sung, the last of which is lighting up.
QList<QTextLayout::FormatRange> LyricsCanvas::litWords(int row) const
{
    QList<QTextLayout::FormatRange> ranges;
    if (row != _activeRow || _wordStarts.isEmpty()) {
        return ranges;
    }
    const auto add = [&](int from, int to, const QColor& ink) {
        QTextLayout::FormatRange range{.start = from, .length = to - from, .format = {}};
        range.format.setForeground(ink);
        if (range.length > 0) {
            ranges << range;
        }
    };
    const int sung = std::clamp(_litWords, 0, static_cast<int>(_wordStarts.size()) - 1);
    if (sung > 0) {
        add(0, _wordStarts[sung - 1], color());
        add(_wordStarts[sung - 1], _wordStarts[sung],
            between(quietColor(), color(), eased((now() - _wordSince) / wordSeconds)));
    }
    return ranges;
}

void LyricsCanvas::paintLine(QPainter& painter, int row, double top) const
{
    const bool isSynced = _model->isSynced();
    const bool hasWords = row == _activeRow && !_wordStarts.isEmpty();
    const bool isPointedAt = row == _pointedRow;
    const double share = !isSynced || isPointedAt ? 1 : hasWords ? 0 : lit(row);
    const auto& line = _layout.lines()[static_cast<std::size_t>(row)];
    if (isPointedAt) {
        constexpr double overlap = LyricsLayout::gap / 2;
        painter.setPen(Qt::NoPen);
        painter.setBrush(plateColor());
        painter.drawRoundedRect(QRectF(0, top - overlap, width(), line.height + 2 * overlap), plateCorner,
                                plateCorner);
    }
    painter.setPen(between(quietColor(), color(), share));
    line.text->draw(&painter, QPointF(plateInset, top),
                    isPointedAt ? QList<QTextLayout::FormatRange>() : litWords(row));
}

void LyricsCanvas::paint(QPainter& painter, QSize size, double scale)
{
    if (_model == nullptr || _layout.lines().empty()) {
        return;
    }
    painter.scale(scale, scale);
    const double shift = anchor() - _place.at(now());
    for (int row = 0; row < static_cast<int>(_layout.lines().size()); ++row) {
        const auto& line = _layout.lines()[static_cast<std::size_t>(row)];
        const double top = std::round((line.top + shift) * scale) / scale;
        if (top + line.height > 0 && top < height()) {
            paintLine(painter, row, top);
        }
    }
    QLinearGradient edges(0, 0, 0, height());
    edges.setColorAt(0, Qt::transparent);
    edges.setColorAt(fadeHeight / height(), Qt::black);
    edges.setColorAt(1 - fadeHeight / height(), Qt::black);
    edges.setColorAt(1, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRectF(QPointF(), QSizeF(size) / scale), edges);
}
