#include <app/DeferredSecretStore.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/UnpaintedProgram.h>

#include <QStringList>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
/// Answers at once and keeps what it was asked.
class OpenStore final : public SecretStore
{
public:
    void read(Secret secret, ReadCompletion completion) override
    {
        asked += u"read "_s + nameOf(secret);
        completion(std::optional(u"a key"_s));
    }
    void write(Secret secret, const QString &text, WriteCompletion completion) override
    {
        asked += u"write "_s + nameOf(secret) + u' ' + text;
        completion({});
    }

    QStringList asked;
};
} // namespace

class DeferredSecretStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_program.emplace(); }
    void cleanup() { m_program.reset(); }

    void readingWaitsForTheFirstPaint()
    {
        const auto open = std::make_shared<OpenStore>();
        DeferredSecretStore deferred(open);
        std::optional<QString> answer;
        deferred.read(Secret::SubtitleKey, [&answer](const auto &result) { answer = *result; });
        MainQueue::shared().runUntilIdle();
        QCOMPARE(open->asked, QStringList());
        FirstPaint::notice();
        MainQueue::shared().runUntilIdle();
        QCOMPARE(open->asked, QStringList(u"read "_s + SecretStore::nameOf(Secret::SubtitleKey)));
        QCOMPARE(answer, std::optional(u"a key"_s));
    }

    void writingDoesNotWait()
    {
        const auto open = std::make_shared<OpenStore>();
        DeferredSecretStore deferred(open);
        bool isWritten = false;
        deferred.write(Secret::MetadataKey, u"new"_s, [&isWritten](const auto &) { isWritten = true; });
        QVERIFY(isWritten);
        QCOMPARE(open->asked,
                 QStringList(u"write "_s + SecretStore::nameOf(Secret::MetadataKey) + u" new"_s));
    }

    void nothingIsReadForAProgramThatEnded()
    {
        auto open = std::make_shared<OpenStore>();
        const std::weak_ptr<OpenStore> weak = open;
        auto deferred = std::make_unique<DeferredSecretStore>(open);
        bool isAnswered = false;
        deferred->read(Secret::SubtitleKey, [&isAnswered](const auto &) { isAnswered = true; });
        deferred.reset();
        open.reset();
        QVERIFY(weak.expired());
        FirstPaint::notice();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!isAnswered);
    }

private:
    Sandbox m_sandbox;
    std::optional<UnpaintedProgram> m_program;
};

PLOVENDIX_GUI_TEST(DeferredSecretStoreTest)
#include "DeferredSecretStoreTest.moc"
