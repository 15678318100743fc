#pragma once
#include <base/Result.h>

#include <QTest>
#include <functional>
#include <optional>
#include <source_location>
#include <type_traits>

/// How long a fact is waited for, in milliseconds: a machine may have much else to do, and sanitizers to
/// carry.
inline constexpr int WaitLimit = 30'000;

/// The one outcome of an asynchronous call. Whatever reads the outcome waits for it first; the test fails
/// when none comes within WaitLimit, and when a second one comes.
template <class Value, class Failure = base::Error>
class Caught final
{
public:
    using Outcome = Result<Value, Failure>;

    std::function<void(Outcome)> completion()
    {
        return [this](const Outcome &outcome) {
            QVERIFY2(!m_outcome, "answered twice");
            m_outcome = outcome;
        };
    }

    /// Whether the outcome is there, without waiting.
    bool came() const { return m_outcome.has_value(); }
    /// Waits for the outcome.
    const Outcome &operator*() const
    {
        if (!QTest::qWaitFor([this] { return came(); }, WaitLimit)) {
            static const Outcome none = Failure();
            fail("no outcome came", std::source_location::current());
            return none;
        }
        return *m_outcome;
    }
    const Outcome *operator->() const { return &**this; }

    /// Waits for a success and gives its value. A failure fails the test with its detail.
    decltype(auto) value(std::source_location where = std::source_location::current()) const
    {
        const Outcome &outcome = **this;
        if (!outcome)
            fail(qPrintable(textOf(outcome.error())), where);
        if constexpr (!std::is_void_v<Value>) {
            static const Value none{};
            return outcome ? outcome.value() : none;
        }
    }
    /// Waits for a failure and gives its error. A success fails the test.
    const Failure &error(std::source_location where = std::source_location::current()) const
    {
        static const Failure none;
        if (!**this)
            return (**this).error();
        fail("succeeded instead of failing", where);
        return none;
    }

private:
    static QString textOf(const Failure &failure)
    {
        if constexpr (std::is_same_v<Failure, base::Error>)
            return failure.localizedDescription + u' ' + failure.detail;
        else
            return failure.detail;
    }
    static void fail(const char *why, std::source_location where)
    {
        QTest::qFail(why, where.file_name(), static_cast<int>(where.line()));
    }

    std::optional<Outcome> m_outcome;
};
