#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QImage>
#include <QProperty>

/// The cover of a record with round corners, cut to a square around its middle; a note on a plate when there
/// is none.
class ArtworkView : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(QColor plate READ plate WRITE setPlate NOTIFY plateChanged)
    Q_PROPERTY(double symbolPart READ symbolPart WRITE setSymbolPart NOTIFY symbolPartChanged)
    Q_PROPERTY(QColor symbolColor READ symbolColor WRITE setSymbolColor NOTIFY symbolColorChanged)

public:
    explicit ArtworkView(QQuickItem* parent = nullptr);

    /// Null when there is no cover.
    QImage image() const { return _image; }
    void setImage(const QImage& image) { _image = image; }
    double radius() const { return _radius; }
    void setRadius(double radius) { _radius = radius; }
    /// Of the plate's side that the note takes.
    double symbolPart() const { return _symbolPart; }
    void setSymbolPart(double part) { _symbolPart = part; }
    QColor plate() const { return _plate; }
    void setPlate(const QColor& color) { _plate = color; }
    QColor symbolColor() const { return _symbolColor; }
    void setSymbolColor(const QColor& color) { _symbolColor = color; }

Q_SIGNALS:
    void imageChanged();
    void radiusChanged();
    void symbolPartChanged();
    void plateChanged();
    void symbolColorChanged();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    Q_OBJECT_BINDABLE_PROPERTY(ArtworkView, QImage, _image, &ArtworkView::imageChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ArtworkView, double, _radius, 0, &ArtworkView::radiusChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ArtworkView, double, _symbolPart, 0.72,
                                         &ArtworkView::symbolPartChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ArtworkView, QColor, _plate, &ArtworkView::plateChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ArtworkView, QColor, _symbolColor, &ArtworkView::symbolColorChanged)
};
