#include "ui/settings/ChoiceSetting.h"

ChoiceSetting::ChoiceSetting(std::function<QStringList()> names, std::function<int()> index,
                             std::function<void(int index)> choose)
    : _choose(std::move(choose))
{
    _names.setBinding(std::move(names));
    _index.setBinding(std::move(index));
}

void ChoiceSetting::choose(int index)
{
    if (index >= 0 && index < names().size()) {
        _choose(index);
    }
}
