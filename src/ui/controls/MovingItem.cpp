#include "ui/controls/MovingItem.h"

void MovingItem::setClock(FrameClock* clock)
{
    if (clock == _clock) {
        return;
    }
    if (_clock != nullptr) {
        _clock->setRate(this, 0);
    }
    _clock = clock;
    restart();
    Q_EMIT clockChanged();
}

void MovingItem::follow()
{
    update();
    if (_clock != nullptr) {
        _clock->setRate(this, isVisible() ? frameRate() : 0, [this] { advance(); });
    }
}

void MovingItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    if (change == ItemVisibleHasChanged) {
        restart();
    }
    PixelItem::itemChange(change, data);
}
