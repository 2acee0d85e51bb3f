#pragma once

#include "base/RunLoop.h"

/// The run loop on Qt's event loop and the system clock.
class EventLoop final : public RunLoop
{
public:
    Date now() const override;
    Uptime uptime() const override;
    void after(double seconds, QObject* context, Work work) override;
    std::unique_ptr<Timer> once(double seconds, QObject* context, Work work) override;
    std::unique_ptr<Timer> every(double seconds, QObject* context, Work work) override;
};
