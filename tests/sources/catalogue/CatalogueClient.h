#pragma once
#include <model/SubtitleService.h>
#include <tests/support/timing/Caught.h>

#include <mutex>
#include <thread>

/// The answers that arrived, on whatever thread.
template <class Value>
class Answers final
{
public:
    std::function<void(Result<Value>)> completion()
    {
        return [this](const Result<Value> &result) {
            const std::scoped_lock lock(m_mutex);
            m_results += result;
            m_thread = std::this_thread::get_id();
        };
    }
    qsizetype count() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_results.size();
    }
    Result<Value> last() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_results.last();
    }
    std::thread::id lastThread() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_thread;
    }

    /// Passes the completion of one call to `call` and waits for the answer.
    template <class Call>
    static Result<Value> awaited(const Call &call)
    {
        // Shared, because an answer that came too late would still arrive.
        const auto answers = std::make_shared<Answers>();
        call([answers, completion = answers->completion()](const auto &result) { completion(result); });
        if (!QTest::qWaitFor([&] { return answers->count() == 1; }, WaitLimit))
            return base::Error{QStringLiteral("test"), 0, QStringLiteral("no answer")};
        return answers->last();
    }

private:
    mutable std::mutex m_mutex;
    QList<Result<Value>> m_results;
    std::thread::id m_thread;
};

QList<Arg> textQuery(const QString &text, const QString &language = QStringLiteral("eng"));
QList<Arg> videoQuery(const QString &hash, quint64 size, const QString &language = QStringLiteral("eng"));

/// Asks and waits. The releases found; or the error's sentence after "error: ".
QStringList ask(SubtitleService &service, const QList<Arg> &args);
/// Asks and waits for the results; none when it failed.
QList<SubtitlePtr> found(SubtitleService &service, const QList<Arg> &args);
/// Downloads and waits.
Result<QUrl> fetch(SubtitleService &service, const SubtitlePtr &subtitle);
