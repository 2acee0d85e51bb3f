#pragma once

#include "platform/Appearance.h"

class FakeAppearance final : public Appearance
{
    Q_OBJECT

public:
    bool isDark() const override { return dark; }

    bool dark = false;
};
