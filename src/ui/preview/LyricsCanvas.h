#pragma once

#include "ui/controls/MovingItem.h"
#include "ui/lyrics/LyricsModel.h"
#include "ui/preview/Glide.h"
#include "ui/preview/LyricsLayout.h"

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QProperty>

#include <optional>

/// The words of a song, which fade out at its upper and lower edge. Of timed lines the one that is sung is
/// lit, word by word where words have times, and the others glide by as the song goes on. They can be looked
/// through; after some seconds of rest the line that is sung is back. Text without times is only looked
/// through.
class LyricsCanvas : public MovingItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(LyricsModel* model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QColor quietColor READ quietColor WRITE setQuietColor NOTIFY colorChanged)
    Q_PROPERTY(QColor plateColor READ plateColor WRITE setPlateColor NOTIFY colorChanged)
    Q_PROPERTY(double inset READ inset CONSTANT)
    Q_PROPERTY(int pointedRow READ pointedRow NOTIFY pointedRowChanged)

public:
    static constexpr double restSeconds = 5; ///< until the line that is sung is back

    explicit LyricsCanvas(QQuickItem* parent = nullptr);
    ~LyricsCanvas() override;

    LyricsModel* model() const { return _model; }
    void setModel(LyricsModel* model);
    QFont font() const { return _font; }
    void setFont(const QFont& font) { _font = font; }
    /// Of what is sung.
    QColor color() const { return _color; }
    void setColor(const QColor& color) { _color = color; }
    /// Of what was or will be.
    QColor quietColor() const { return _quietColor; }
    void setQuietColor(const QColor& color) { _quietColor = color; }
    /// Behind the line that is pointed at.
    QColor plateColor() const { return _plateColor; }
    void setPlateColor(const QColor& color) { _plateColor = color; }
    /// How far the plate reaches beyond the text at either side, in points.
    double inset() const;
    /// The timed line that is pointed at, by the pointer or by keys; -1 for none.
    int pointedRow() const { return _pointedRow; }

    /// The pointer is at a height in the item, in points, and points at whatever comes by there; or it has
    /// left.
    Q_INVOKABLE void point(double y);
    Q_INVOKABLE void leave();
    /// Goes to where the line begins that is pointed at.
    Q_INVOKABLE void choose();
    /// Looks further by a way, in points, or by a number of lines.
    Q_INVOKABLE void turn(double way);
    Q_INVOKABLE void step(int lines);

Q_SIGNALS:
    void modelChanged();
    void fontChanged();
    void colorChanged();
    void pointedRowChanged();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    int frameRate() const override;
    void advance() override;

private:
    void relayout();
    void followLine();
    void followWord();
    void lookAt(double place);
    void backToSong();
    double songPlace() const;
    double anchor() const;
    double placed(double place) const;
    double lit(int row) const;
    void followPointer();
    void setPointedRow(int row);
    void paintLine(QPainter& painter, int row, double top) const;
    QList<QTextLayout::FormatRange> litWords(int row) const;

    QPointer<LyricsModel> _model;
    LyricsLayout _layout;
    Glide _place; ///< what height of the layout lies at the anchor
    int _activeRow = -1;
    int _lastActiveRow = -1;
    Uptime _activeSince = Uptime::distantPast();
    int _litWords = 0;
    Uptime _wordSince = Uptime::distantPast();
    QList<int> _wordStarts;         ///< of the active line; empty when its words have no times
    std::optional<Uptime> _turned;  ///< when somebody looked further; none while the song is followed
    std::optional<double> _pointer; ///< its height in the item, if it points at lines
    int _pointedRow = -1;
    Q_OBJECT_BINDABLE_PROPERTY(LyricsCanvas, QFont, _font, &LyricsCanvas::fontChanged)
    Q_OBJECT_BINDABLE_PROPERTY(LyricsCanvas, QColor, _color, &LyricsCanvas::colorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(LyricsCanvas, QColor, _quietColor, &LyricsCanvas::colorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(LyricsCanvas, QColor, _plateColor, &LyricsCanvas::colorChanged)
};
