#pragma once

#include "player/IITCollection.h"
#include "support/player/memory/MemoryPlayerState.h"

#include <QList>
#include <QString>
#include <memory>

namespace Pelorin {

// A collection the in-memory player hands out: the items as they were when it was asked for.
template <typename T> class MemoryCollection final : public IITCollection<T> {
public:
    MemoryCollection(std::weak_ptr<MemoryPlayerState> state, QString typeName,
                     QList<std::shared_ptr<T>> items)
        : m_state(std::move(state)), m_typeName(std::move(typeName)), m_items(std::move(items)) {}

    int Count() const override {
        use(QStringLiteral("Count"));
        return static_cast<int>(m_items.size());
    }

    std::shared_ptr<T> Item(int index) const override {
        use(QStringLiteral("Item"));
        if (index < 1 || index > m_items.size())
            return nullptr;
        return m_items[index - 1];
    }

private:
    void use(const QString& operation) const {
        const std::shared_ptr<MemoryPlayerState> state = m_state.lock();
        if (!state)
            throw VbError::Player(QStringLiteral("The player is not running"));
        state->check(m_typeName + QLatin1Char('.') + operation);
    }

    std::weak_ptr<MemoryPlayerState> m_state;
    QString m_typeName;
    QList<std::shared_ptr<T>> m_items;
};

} // namespace Pelorin
