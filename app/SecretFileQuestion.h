#pragma once
#include <QObject>
#include <functional>
#include <vector>

/// Asks the person whether secrets may lie in a file when the keyring does not take them: once for all that
/// come while the question is up, and not again in this run after a yes. Never waits. Main thread only.
class SecretFileQuestion final : public QObject
{
public:
    using Answer = std::function<void(bool agreed)>;

    /// The question stands over the active window.
    void ask(Answer answer);

private:
    void finish(bool agreed);

    bool m_hasAgreed = false;
    std::vector<Answer> m_waiting;
};
