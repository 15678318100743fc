#pragma once
#include <QObject>
#include <functional>
#include <vector>

/// Asks the person whether secrets may be kept in a file when the keyring does not accept them. One question
/// serves all requests that arrive while it is shown, and a yes holds for the whole run. Does not block. Main
/// thread only.
class SecretFileQuestion final : public QObject
{
public:
    using Answer = std::function<void(bool agreed)>;

    /// Shows the question over the active window.
    void ask(Answer answer);

private:
    void finish(bool agreed);

    bool m_hasAgreed = false;
    std::vector<Answer> m_waiting;
};
