#pragma once

#include "player/IITCollection.h"

#include <QList>
#include <memory>

namespace Pelorin {

// A collection as the daemon listed it when it was asked for.
template <typename T> class DaemonCollection final : public IITCollection<T> {
public:
    explicit DaemonCollection(QList<std::shared_ptr<T>> items) : m_items(std::move(items)) {}

    int Count() const override { return static_cast<int>(m_items.size()); }

    std::shared_ptr<T> Item(int index) const override {
        if (index < 1 || index > m_items.size()) {
            return nullptr;
        }
        return m_items[index - 1];
    }

private:
    QList<std::shared_ptr<T>> m_items;
};

} // namespace Pelorin
