#include "DeferredSecretStore.h"

#include <ui/window/FirstPaint.h>

#include <utility>

DeferredSecretStore::DeferredSecretStore(std::shared_ptr<SecretStore> store) : m_store(std::move(store)) {}

void DeferredSecretStore::read(Secret secret, ReadCompletion completion)
{
    FirstPaint::afterwards([weak = std::weak_ptr(m_store), secret, completion = std::move(completion)] {
        if (const auto store = weak.lock())
            store->read(secret, completion);
    });
}

void DeferredSecretStore::write(Secret secret, const QString &text, WriteCompletion completion)
{
    m_store->write(secret, text, std::move(completion));
}
