#pragma once
#include <base/Result.h>

#include <QTest>
#include <functional>
#include <optional>

/// How long a fact is waited for, in milliseconds: a machine may have much else to do, and sanitizers to
/// carry.
inline constexpr int WaitLimit = 30'000;

/// Catches the one outcome of an asynchronous call. A second one fails the test.
template <class Value>
class Caught final
{
public:
    std::function<void(Result<Value>)> completion()
    {
        return [this](const Result<Value> &outcome) {
            QVERIFY2(!m_outcome, "answered twice");
            m_outcome = outcome;
        };
    }
    bool came() const { return m_outcome.has_value(); }
    const Result<Value> &operator*() const { return *m_outcome; }
    const Result<Value> *operator->() const { return &*m_outcome; }

private:
    std::optional<Result<Value>> m_outcome;
};
