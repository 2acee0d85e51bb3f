#include "ui/controls/SymbolIcon.h"

#include "ui/controls/Symbol.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

class SymbolEngine final : public QIconEngine
{
public:
    SymbolEngine(QString name, const QColor& color, const QColor& selectedColor)
        : _name(std::move(name))
        , _color(color)
        , _selectedColor(selectedColor)
    {
    }

    QIconEngine* clone() const override { return new SymbolEngine(_name, _color, _selectedColor); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.left() + (rect.width() - side) / 2, rect.top() + (rect.height() - side) / 2);
        painter->fillPath(symbolOutline(_name, side), mode == QIcon::Selected ? _selectedColor : _color);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

private:
    QString _name;
    QColor _color;
    QColor _selectedColor;
};

} // namespace

QIcon symbolIcon(const QString& name, const QColor& color, const QColor& selectedColor)
{
    return QIcon(new SymbolEngine(name, color, selectedColor));
}
