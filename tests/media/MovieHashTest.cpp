#include "VideoVectors.h"

#include <base/FileManager.h>
#include <media/MovieHash.h>
#include <media/RegularFile.h>
#include <tests/support/Sandbox.h>

#include <QFile>
#include <QTest>

#include <algorithm>
#include <tests/support/TestMain.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
constexpr quint64 MinimumBytes = 131072;

/// Content that can shrink or grow between two looks at it, or end before its size says.
class MovingContent final : public VideoContent
{
public:
    QList<std::optional<quint64>> sizes; // given in turn, the last one from then on
    quint64 readableBytes = MinimumBytes;

    std::optional<quint64> size() override
    {
        const std::optional<quint64> present = sizes.first();
        if (sizes.size() > 1)
            sizes.removeFirst();
        return present;
    }

    bool readExactly(quint64 offset, std::span<char> buffer) override
    {
        std::fill(buffer.begin(), buffer.end(), '\0');
        return offset + buffer.size() <= readableBytes;
    }
};
} // namespace

class MovieHashTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;

    QString video(const QString &name) const
    {
        return m_sandbox.writeFile(name, QByteArray(static_cast<qsizetype>(MinimumBytes), '\0'));
    }

private Q_SLOTS:
    void vectors_data()
    {
        QTest::addColumn<qsizetype>("index");
        const QList<HashVector> &vectors = hashVectors();
        for (qsizetype i = 0; i < vectors.size(); ++i)
            QTest::newRow(vectors[i].name) << i;
    }

    void vectors()
    {
        QFETCH(qsizetype, index);
        const HashVector &vector = hashVectors().at(index);
        QFile file(m_sandbox.path(QStringLiteral("vector.bin")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(vector.size));
        for (const Patch &patch : vector.patches) {
            QVERIFY(file.seek(patch.offset));
            QCOMPARE(file.write(patch.bytes), patch.bytes.size());
        }
        file.close();
        const std::optional<VideoHash> hash = movieHash(QUrl::fromLocalFile(file.fileName()));
        QVERIFY(file.remove());

        QCOMPARE(hash.has_value(), !vector.hash.isEmpty());
        if (hash) {
            QCOMPARE(hash->hash, vector.hash);
            QCOMPARE(hash->size, static_cast<quint64>(vector.size));
        }
    }

    void shortReadIsNoHash()
    {
        MovingContent content;
        content.sizes = {MinimumBytes};
        QVERIFY(movieHash(content));
        content.readableBytes = MinimumBytes - 1;
        QVERIFY(!movieHash(content));
    }

    void fileThatChangesItsSizeIsNoHash()
    {
        MovingContent content;
        content.readableBytes = 2 * MinimumBytes;
        content.sizes = {MinimumBytes, MinimumBytes + 1};
        QVERIFY(!movieHash(content));
        content.sizes = {MinimumBytes, std::nullopt};
        QVERIFY(!movieHash(content));
    }

    void fileThatVanishesIsNoHash()
    {
        const QString path = video(QStringLiteral("gone.mkv"));
        QVERIFY(QFile::remove(path));
        QVERIFY(!movieHash(QUrl::fromLocalFile(path)));
    }

    void fileCutWhileOpenIsNoHash()
    {
        const QString path = video(QStringLiteral("cut.mkv"));
        const std::unique_ptr<VideoContent> file = openRegularFile(QFile::encodeName(path));
        QVERIFY(file);
        QVERIFY(QFile::resize(path, 70000));
        std::array<char, 65536> window{};
        QVERIFY(file->readExactly(0, window));
        QVERIFY(!file->readExactly(65536, window));
    }

    void folderIsNoHash() { QVERIFY(!movieHash(QUrl::fromLocalFile(m_sandbox.path(QStringLiteral("."))))); }

    void pipeWithoutWriterIsNoHashAtOnce()
    {
        const QByteArray path = QFile::encodeName(m_sandbox.path(QStringLiteral("pipe.mkv")));
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
        QVERIFY(!movieHash(QUrl::fromLocalFile(QFile::decodeName(path))));
    }

    void deviceIsNoHash() { QVERIFY(!movieHash(QUrl(QStringLiteral("file:///dev/zero")))); }

    void socketIsNoHash()
    {
        const QByteArray path = QFile::encodeName(m_sandbox.path(QStringLiteral("s")));
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        QVERIFY(path.size() < qsizetype(sizeof address.sun_path));
        std::copy(path.begin(), path.end(), address.sun_path);
        const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QCOMPARE(::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        QVERIFY(!movieHash(QUrl::fromLocalFile(QFile::decodeName(path))));
        ::close(descriptor);
    }

    void unreadableFileIsNoHash()
    {
        const QString path = video(QStringLiteral("locked.mkv"));
        QVERIFY(movieHash(QUrl::fromLocalFile(path)));
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0), 0);
        // The administrator may read everything: look as nobody.
        const bool isRoot = ::geteuid() == 0;
        if (isRoot)
            QCOMPARE(::seteuid(65534), 0);
        const std::optional<VideoHash> hash = movieHash(QUrl::fromLocalFile(path));
        if (isRoot)
            QCOMPARE(::seteuid(0), 0);
        QVERIFY(!hash);
    }

    void linkToAVideoIsTheVideo()
    {
        const QString path = video(QStringLiteral("real.mkv"));
        const QString link = m_sandbox.path(QStringLiteral("link.mkv"));
        QVERIFY(QFile::link(path, link));
        QVERIFY(movieHash(QUrl::fromLocalFile(link)));
        QVERIFY(QFile::remove(path));
        QVERIFY(!movieHash(QUrl::fromLocalFile(link)));
    }

    void otherUrlsAreNoHash_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("empty") << QUrl();
        QTest::newRow("web") << QUrl(QStringLiteral("https://example.org/film.mkv"));
        QTest::newRow("no scheme") << QUrl(QStringLiteral("film.mkv"));
        QTest::newRow("no path") << QUrl(QStringLiteral("file://"));
        QTest::newRow("NUL inside") << QUrl(QStringLiteral("file:///dev/null%00.mkv"));
    }

    void otherUrlsAreNoHash()
    {
        QFETCH(QUrl, url);
        QVERIFY(!movieHash(url));
    }

    void nameWithBytesThatAreNotUtf8IsHashed()
    {
        const QByteArray path = QFile::encodeName(m_sandbox.path(QStringLiteral("."))) + "/caf\xe9.mkv";
        const QByteArray content(static_cast<qsizetype>(MinimumBytes), '\0');
        FILE *file = std::fopen(path.constData(), "wb");
        QVERIFY(file);
        QCOMPARE(std::fwrite(content.constData(), 1, static_cast<std::size_t>(content.size()), file),
                 static_cast<std::size_t>(content.size()));
        QCOMPARE(std::fclose(file), 0);
        const std::optional<VideoHash> hash = movieHash(FileManager::urlFromFileSystemPath(path));
        QCOMPARE(::unlink(path.constData()), 0);
        QVERIFY(hash);
        QCOMPARE(hash->hash, QStringLiteral("0000000000020000"));
    }
};

PLOVENDIX_TEST(MovieHashTest)
#include "MovieHashTest.moc"
