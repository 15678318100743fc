#include <base/FileManager.h>
#include <media/MovieHash.h>
#include <tests/support/Sandbox.h>

#include <tests/support/TestMain.h>

#include <QFile>
#include <QtEndian>

#include <algorithm>
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
/// Bytes at an offset of an otherwise empty (sparse) file.
using Patches = QList<std::pair<qint64, QByteArray>>;

QByteArray made(qsizetype size, const std::function<char(qsizetype)> &byteAt)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = byteAt(i);
    return bytes;
}

QByteArray littleEndian(quint64 value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}
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
        QTest::addColumn<qint64>("size");
        QTest::addColumn<Patches>("patches");
        QTest::addColumn<QString>("hash"); // empty for none
        const auto row = [](const char *name, qint64 size, const Patches &patches, const char *hash) {
            QTest::newRow(name) << size << patches << QString::fromLatin1(hash);
        };
        const auto filled = [&row](const char *name, const QByteArray &bytes, const char *hash) {
            row(name, bytes.size(), {{0, bytes}}, hash);
        };
        constexpr qint64 FiveGibibytes = 5368709120;
        quint32 x = 1;
        row("zeros", 131072, {}, "0000000000020000");
        filled("counting bytes", made(200000, [](qsizetype i) { return char(i % 256); }), "a0601fdf9f620d40");
        filled("all ones", QByteArray(131072, '\xff'), "000000000001c000");
        filled("size not a multiple of 8", QByteArray(200003, '\xff'), "000000000002cd43");
        filled("unaligned tail", made(131079, [](qsizetype i) { return char(i % 251); }), "38efa4651bd271f1");
        row("5 GiB sparse", FiveGibibytes, {}, "0000000140000000");
        row("the middle does not count", FiveGibibytes,
            {{0, "PLOVENDIX-HEAD--"}, {65536, "IGNORED-MIDDLE!!"}, {FiveGibibytes - 16, "PLOVENDIX-TAIL--"}},
            "ece32d16733af350");
        row("a hash of zero", 131072, {{0, littleEndian(quint64(0) - 131072)}}, "0000000000000000");
        row("zero padding", 131072, {{0, littleEndian(quint64(0xabc) - 131072)}}, "0000000000000abc");
        row("size over 32 bits", 4294967297, {{4294967296, "\x80"}}, "8000000100000001");
        filled("congruential bytes",
               made(1000003,
                    [&x](qsizetype) {
                        x = (x * 1103515245U + 12345U) & 0x7fffffffU;
                        return char((x >> 16) & 255U);
                    }),
               "9676cba35f55bd3e");
        filled("a byte too small", QByteArray(131071, '\xff'), "");
    }
    void vectors()
    {
        QFETCH(const qint64, size);
        QFETCH(const Patches, patches);
        QFETCH(const QString, hash);
        QFile file(m_sandbox.path(QStringLiteral("vector.bin")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(size));
        for (const auto &[offset, bytes] : patches) {
            QVERIFY(file.seek(offset));
            QCOMPARE(file.write(bytes), bytes.size());
        }
        file.close();
        const std::optional<VideoHash> found = movieHash(QUrl::fromLocalFile(file.fileName()));
        QVERIFY(file.remove());
        const std::optional<VideoHash> expected = VideoHash{hash, static_cast<quint64>(size)};
        QCOMPARE(found, hash.isEmpty() ? std::nullopt : expected);
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
        const auto link = [this](const QString &target, const QString &name) {
            const QString path = m_sandbox.path(name);
            if (!QFile::link(target, path))
                qFatal("%s cannot be made", qUtf8Printable(path));
            return QUrl::fromLocalFile(path);
        };
        QTest::newRow("dangling link")
            << link(m_sandbox.path(QStringLiteral("nowhere.mkv")), QStringLiteral("dangling.mkv"));
        QTest::newRow("link to itself") << link(QStringLiteral("itself.mkv"), QStringLiteral("itself.mkv"));
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
