#pragma once
#include <QString>
#include <utility>
#include <variant>

namespace base
{
/// An expected failure as a value: its domain, a code within that domain, and the sentence that is shown.
/// `detail` is for the log only and is never shown.
struct Error
{
    QString domain;
    int code = 0;
    QString localizedDescription;
    QString detail = {};
};
} // namespace base

/// Either a value or the failure, mostly an Error, that prevented it. Reading the absent side is a
/// programming error (std::bad_variant_access).
template <class Value, class Failure = base::Error>
class [[nodiscard]] Result final
{
public:
    Result(Value value) : m_content(std::in_place_index<0>, std::move(value)) {}
    Result(Failure failure) : m_content(std::in_place_index<1>, std::move(failure)) {}

    bool hasValue() const { return m_content.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    const Value &value() const & { return std::get<0>(m_content); }
    Value &value() & { return std::get<0>(m_content); }
    Value &&value() && { return std::get<0>(std::move(m_content)); }
    const Value &operator*() const & { return value(); }
    const Value *operator->() const { return &value(); }
    const Failure &error() const { return std::get<1>(m_content); }

private:
    std::variant<Value, Failure> m_content;
};

/// Success without a value, or an Error.
template <>
class [[nodiscard]] Result<void, base::Error> final
{
public:
    Result() = default;
    Result(base::Error error) : m_content(std::move(error)) {}

    bool hasValue() const { return m_content.index() == 0; }
    explicit operator bool() const { return hasValue(); }
    const base::Error &error() const { return std::get<1>(m_content); }

private:
    std::variant<std::monostate, base::Error> m_content;
};
