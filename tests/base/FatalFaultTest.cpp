#include <base/FatalFault.h>
#include <tests/support/Sandbox.h>

#include <QTest>

#include <array>
#include <csignal>

#include <tests/support/TestMain.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
struct Death
{
    int signal = 0;
    QByteArray lastWords;
};

/// Lets a child process die of it.
Death dieOf(const QString &message)
{
    std::array<int, 2> ends = {};
    if (::pipe(ends.data()) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGABRT, SIG_DFL);
        const rlimit none = {0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        ::dup2(ends[1], STDERR_FILENO);
        fatalFault(message);
    }
    ::close(ends[1]);
    Death death;
    std::array<char, 512> buffer = {};
    for (ssize_t size = 0; (size = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
        death.lastWords.append(buffer.data(), size);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    death.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return death;
}
} // namespace

class FatalFaultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheMessageAndAborts()
    {
        const Death death = dieOf(u"The outlet “searchField” is missing"_s);
        QCOMPARE(death.signal, SIGABRT);
        QCOMPARE(death.lastWords.left(death.lastWords.indexOf('\n')),
                 QByteArray("Fatal fault: The outlet “searchField” is missing"));
    }

    void abortReturnsAfterTheTrap()
    {
        {
            const FatalFaultTrap trap;
            QVERIFY_EXCEPTION_THROWN(fatalFault(u"once"_s), FatalFaultCaught);
        }
        QCOMPARE(dieOf(u"twice"_s).signal, SIGABRT);
    }
};

PLOVENDIX_PLAIN_TEST(FatalFaultTest)
#include "FatalFaultTest.moc"
