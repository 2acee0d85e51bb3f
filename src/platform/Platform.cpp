#include "platform/Platform.h"

#include <QtGlobal>

namespace {

Platform* currentPlatform = nullptr;

} // namespace

Platform& Platform::current()
{
    Q_ASSERT_X(currentPlatform != nullptr, Q_FUNC_INFO, "no platform has been set");
    return *currentPlatform;
}

void Platform::setCurrent(Platform* platform)
{
    currentPlatform = platform;
}
