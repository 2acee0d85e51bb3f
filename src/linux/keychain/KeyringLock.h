#pragma once

#include "platform/Keychain.h"

/// Whether the keyring is locked: asked on the bus, which unlocks nothing and shows nothing to the user.
/// `answer` gets it later, unless `context` is gone by then; a keyring that does not say is not locked.
namespace KeyringLock {

using Answer = std::function<void(bool isLocked)>;

/// Of the keyring that new items go to.
void whenKnown(QObject* context, Answer answer);

/// Of a stored item; one that is not there is not locked.
void whenItemKnown(const Keychain::Item& item, QObject* context, Answer answer);

} // namespace KeyringLock
