#pragma once

#include "audio/VisualizerModel.h"
#include "ui/controls/FrameClock.h"
#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QProperty>

#include <vector>

/// The model is handed from one property to another.
struct VisualizerModelType {
    Q_GADGET
    QML_FOREIGN(VisualizerModel)
    QML_ANONYMOUS
};

/// The four-bar level meter, drawn only while it moves. Without a model the bars lie at rest.
class VisualizerView : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(VisualizerModel* model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(FrameClock* clock READ clock WRITE setClock NOTIFY clockChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// Of the bars at rest.
    Q_PROPERTY(QColor restColor READ restColor WRITE setRestColor NOTIFY colorChanged)

public:
    explicit VisualizerView(QQuickItem* parent = nullptr);
    ~VisualizerView() override;

    /// The bars of a meter of this size, bottom up, all of it in pixels of the screen. Their sides lie
    /// between pixels at every scale, and the gaps between them are equal.
    static std::vector<QRectF> barRects(const VisualizerModel::Heights& heights, QSize size, double scale);

    VisualizerModel* model() const { return _model; }
    void setModel(VisualizerModel* model);
    FrameClock* clock() const { return _clock; }
    void setClock(FrameClock* clock);
    QColor color() const { return _color; }
    void setColor(const QColor& color) { _color = color; }

    QColor restColor() const { return _restColor; }
    void setRestColor(const QColor& color) { _restColor = color; }

Q_SIGNALS:
    void modelChanged();
    void clockChanged();
    void colorChanged();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void follow();

    QPointer<VisualizerModel> _model;
    QPointer<FrameClock> _clock;
    Q_OBJECT_BINDABLE_PROPERTY(VisualizerView, QColor, _color, &VisualizerView::colorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(VisualizerView, QColor, _restColor, &VisualizerView::colorChanged)
};
