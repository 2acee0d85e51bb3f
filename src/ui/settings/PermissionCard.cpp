#include "ui/settings/PermissionCard.h"

PermissionCard::PermissionCard(Face face, std::function<State()> read, std::function<void(int action)> act)
    : _face(std::move(face))
    , _read(std::move(read))
    , _act(std::move(act))
    , _state(_read())
{
}

void PermissionCard::act(int action)
{
    if (action >= 0 && action < _face.actions.size()) {
        _act(action);
        refresh();
    }
}
