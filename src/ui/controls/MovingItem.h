#pragma once

#include "ui/controls/FrameClock.h"
#include "ui/controls/PixelItem.h"

#include <QPointer>

/// An item that moves at times, to the beat of a clock that it shares with others. It stands while nobody can
/// see it.
class MovingItem : public PixelItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(FrameClock* clock READ clock WRITE setClock NOTIFY clockChanged)

public:
    using PixelItem::PixelItem;

    FrameClock* clock() const { return _clock; }
    void setClock(FrameClock* clock);

Q_SIGNALS:
    void clockChanged();

protected:
    /// Frames per second that it wants while it can be seen; 0 while it stands.
    virtual int frameRate() const = 0;

    /// What is to be done for a frame.
    virtual void advance() { update(); }

    /// It has been given a clock, or is shown or hidden.
    virtual void restart() { follow(); }

    /// Draws it, and goes on at the rate that it wants by now.
    void follow();

    /// That of the clock.
    Uptime now() const { return _clock != nullptr ? _clock->uptime() : Uptime(); }

    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    QPointer<FrameClock> _clock;
};
