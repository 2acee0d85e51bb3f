#pragma once

#include "ui/menu/PellarMenuItem.h"
#include "ui/panel/Panel.h"

#include <functional>
#include <memory>

class PellarMenuModel;

/// The context menu as a pane of glass below the pill. Choosing a row closes it before the row's command
/// runs.
class PellarMenuPanel : public Panel
{
    Q_OBJECT

public:
    using Items = std::function<std::vector<PellarMenuItem>()>;

    /// `items` are asked as the panel is made, and by `refresh`.
    PellarMenuPanel(const Desktop& desktop, Items items, const QRect& pill);
    ~PellarMenuPanel() override;

    /// Shows the rows as they are now.
    void refresh();

    PellarMenuModel& model() { return *_model; }

private:
    void choose(const PellarMenuItem& item);
    void dress();

    Items _items;
    std::unique_ptr<PellarMenuModel> _model;
};
