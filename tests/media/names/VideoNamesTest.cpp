#include <media/names/VideoNames.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <algorithm>
#include <semaphore>

using namespace std::chrono_literals;

namespace
{
constexpr quint64 VideoBytes = 131072;

/// A disk that sleeps until the test wakes it.
struct SleepingDisk
{
    std::binary_semaphore woken{0};
    std::binary_semaphore closed{0};
};

class SleepingVideo final : public VideoContent
{
public:
    explicit SleepingVideo(std::shared_ptr<SleepingDisk> disk) : m_disk(std::move(disk)) {}
    ~SleepingVideo() override { m_disk->closed.release(); }

    std::optional<quint64> size() override { return VideoBytes; }
    bool readExactly(quint64 offset, std::span<char> buffer) override
    {
        if (offset == 0)
            m_disk->woken.acquire();
        std::fill(buffer.begin(), buffer.end(), '\0');
        return true;
    }

private:
    std::shared_ptr<SleepingDisk> m_disk;
};
} // namespace

class VideoNamesTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;

    static VideoHash video(quint64 size) { return {QStringLiteral("0123456789abcdef"), size}; }

private Q_SLOTS:
    void nameIsRememberedForItsContent()
    {
        VideoNames names;
        names.remember(video(1), QStringLiteral("one"));
        names.remember(video(2), QStringLiteral("two"));
        QCOMPARE(names.nameOf(video(1)), QStringLiteral("one"));
        QCOMPARE(names.nameOf(video(3)), QString());
    }

    void lastNameOfTheSameContentWins()
    {
        VideoNames names;
        names.remember(video(1), QStringLiteral("old"));
        names.remember(video(1), QStringLiteral("new"));
        QCOMPARE(names.nameOf(video(1)), QStringLiteral("new"));
    }

    void hashedVideoHasItsName()
    {
        const QUrl url = QUrl::fromLocalFile(
            m_sandbox.writeFile(QStringLiteral("Night Ferry.mkv"), QByteArray(VideoBytes, '\0')));
        VideoNames names;
        const std::optional<VideoHash> hash = names.hash(url);
        QVERIFY(hash);
        QCOMPARE(hash->size, VideoBytes);
        QCOMPARE(names.nameOf(*hash), QStringLiteral("Night Ferry.mkv"));
        QVERIFY(!names.hash(QUrl(QStringLiteral("https://example.org/film.mkv"))));
        QVERIFY(!names.hash(QUrl::fromLocalFile(m_sandbox.path(QStringLiteral("gone.mkv")))));
    }

    void sleepingDiskIsNotWaitedFor()
    {
        const auto disk = std::make_shared<SleepingDisk>();
        const auto open = [disk](const QByteArray &) { return std::make_unique<SleepingVideo>(disk); };
        const QUrl url(QStringLiteral("file:///share/Night Ferry.mkv"));
        VideoNames names;
        QVERIFY(!names.hash(url, 1ms, open));
        // It wakes too late: the answer is dropped, and what the thread held is let go.
        disk->woken.release();
        disk->closed.acquire();
        const VideoHash late{QStringLiteral("0000000000020000"), VideoBytes};
        QCOMPARE(names.nameOf(late), QString());
        // One that is awake by now is hashed.
        disk->woken.release();
        QCOMPARE(names.hash(url, 1h, open), late);
        QCOMPARE(names.nameOf(late), QStringLiteral("Night Ferry.mkv"));
    }

    void theOldestAreForgotten()
    {
        VideoNames names;
        for (quint64 size = 0; size < 1000; ++size)
            names.remember(video(size), QString::number(size));
        QCOMPARE(names.nameOf(video(0)), QString());
        QCOMPARE(names.nameOf(video(999)), QStringLiteral("999"));
    }
};

PLOVENDIX_TEST(VideoNamesTest)
#include "VideoNamesTest.moc"
