#include "ui/settings/Look.h"

#include "platform/Appearance.h"

namespace {

constexpr const char* appearanceProperty = "pellarAppearance"; // of the engine

} // namespace

Look::Look(const Appearance& appearance)
{
    const auto dress = [this, &appearance] {
        _colors = WindowColors::forDesktop(appearance.isDark());
        _glass = GlassColors::forDesktop(appearance.isDark(), false);
    };
    dress();
    connect(&appearance, &Appearance::changed, this, dress);
}

void Look::follow(QQmlEngine& engine, Appearance& appearance)
{
    engine.setProperty(appearanceProperty, QVariant::fromValue(&appearance));
}

Look* Look::create(QQmlEngine* engine, QJSEngine* /*scripts*/)
{
    return new Look(*engine->property(appearanceProperty).value<Appearance*>());
}
