#pragma once

#include "audio/VisualizerModel.h"
#include "ui/controls/MovingItem.h"

#include <QColor>
#include <QHash>
#include <QImage>
#include <QProperty>

/// The model is handed from one property to another.
struct VisualizerModelType {
    Q_GADGET
    QML_FOREIGN(VisualizerModel)
    QML_ANONYMOUS
};

/// The four-bar level meter, drawn only while it moves. Without a model the bars lie at rest.
class VisualizerView : public MovingItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(VisualizerModel* model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// Of the bars at rest.
    Q_PROPERTY(QColor restColor READ restColor WRITE setRestColor NOTIFY colorChanged)

public:
    explicit VisualizerView(QQuickItem* parent = nullptr);
    ~VisualizerView() override;

    VisualizerModel* model() const { return _model; }
    void setModel(VisualizerModel* model);
    QColor color() const { return _color; }
    void setColor(const QColor& color) { _color = color; }

    QColor restColor() const { return _restColor; }
    void setRestColor(const QColor& color) { _restColor = color; }

Q_SIGNALS:
    void modelChanged();
    void colorChanged();

protected:
    void draw(QImage& image, double scale) override;
    int frameRate() const override;
    void advance() override;

private:
    /// What the images of the bars were drawn with.
    struct BarStyle {
        QColor color;
        QSize size; ///< of the highest bar, in pixels
        double cornerRadius = 0;

        friend bool operator==(const BarStyle&, const BarStyle&) = default;
    };

    const QImage& bar(double height, const BarStyle& style);

    QPointer<VisualizerModel> _model;
    QHash<int, QImage> _bars; ///< by their height in eighths of a pixel
    BarStyle _barStyle;
    Q_OBJECT_BINDABLE_PROPERTY(VisualizerView, QColor, _color, &VisualizerView::colorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(VisualizerView, QColor, _restColor, &VisualizerView::colorChanged)
};
