#include "ui/menu/PellarMenuPanel.h"

#include "ui/menu/MenuAccessibility.h"
#include "ui/menu/MenuPlacement.h"
#include "ui/menu/PellarMenuModel.h"

#include <QQuickView>
#include <QUrl>

namespace {

const PanelStyle& style()
{
    static const PanelStyle style{.title = QStringLiteral("Pellar Menu"),
                                  .cornerRadius = 14,
                                  .placement = &menuPlacement,
                                  .opening = {.first = {0.25, 1}, .second = {0.5, 1}, .seconds = 0.32},
                                  .closing = {.first = {0.5, 0}, .second = {0.75, 0}, .seconds = 0.24}};
    return style;
}

} // namespace

PellarMenuPanel::PellarMenuPanel(const Desktop& desktop, Items items, const QRect& pill)
    : Panel(desktop, style(), pill)
    , _items(std::move(items))
    , _model(std::make_unique<PellarMenuModel>(_items()))
{
    makeMenusAccessible();
    dress();
    connect(this, &Panel::appearanceChanged, this, &PellarMenuPanel::dress);
    connect(_model.get(), &PellarMenuModel::chosen, this, &PellarMenuPanel::choose);
    setView(QUrl(QStringLiteral("qrc:/Pellar/Menu/PellarMenuView.qml")),
            {{QStringLiteral("menu"), QVariant::fromValue(_model.get())}});
}

/// The view goes before what it shows.
PellarMenuPanel::~PellarMenuPanel()
{
    view().setSource({});
}

void PellarMenuPanel::refresh()
{
    if (!isClosing()) {
        _model->setItems(_items());
    }
}

void PellarMenuPanel::choose(const PellarMenuItem& item)
{
    const auto command = item.choose;
    close();
    command();
}

void PellarMenuPanel::dress()
{
    _model->setColors(MenuColors::forDesktop(isDark()));
}
