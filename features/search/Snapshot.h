#pragma once
#include <memory>
#include <optional>

/// An optional value that one thread stores and others read: an immutable snapshot behind a shared pointer,
/// exchanged atomically. Readers keep a loaded value while they hold the pointer.
template <class Value>
class Snapshot final
{
public:
    /// The value, or null.
    std::shared_ptr<const Value> load() const { return std::atomic_load(&m_value); }
    void store(Value value) { std::atomic_store(&m_value, std::make_shared<const Value>(std::move(value))); }
    void store(std::optional<Value> value)
    {
        if (value)
            store(std::move(*value));
        else
            clear();
    }
    void clear() { std::atomic_store(&m_value, std::shared_ptr<const Value>()); }
    std::optional<Value> value() const
    {
        const auto loaded = load();
        return loaded ? std::optional(*loaded) : std::nullopt;
    }

private:
    std::shared_ptr<const Value> m_value;
};
