#include "MovieHash.h"

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QFile>
#include <QFileInfo>
#endif

#ifdef Q_OS_UNIX
namespace
{
class RegularFile final : public VideoContent
{
public:
    explicit RegularFile(int descriptor) : m_descriptor(descriptor) {}
    ~RegularFile() override { ::close(m_descriptor); }
    RegularFile(const RegularFile &) = delete;
    RegularFile &operator=(const RegularFile &) = delete;

    std::optional<quint64> size() override
    {
        struct stat status = {};
        if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
            return std::nullopt;
        return static_cast<quint64>(status.st_size);
    }

    bool readExactly(quint64 offset, std::span<char> buffer) override
    {
        while (!buffer.empty()) {
            const ssize_t count =
                ::pread(m_descriptor, buffer.data(), buffer.size(), static_cast<off_t>(offset));
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return false;
            offset += static_cast<quint64>(count);
            buffer = buffer.subspan(static_cast<std::size_t>(count));
        }
        return true;
    }

private:
    int m_descriptor;
};

static_assert(sizeof(off_t) == 8, "Videos are larger than 32 bits can say");
} // namespace

std::unique_ptr<VideoContent> openRegularFile(const QByteArray &path)
{
    // A NUL would truncate the name and open another file. O_NONBLOCK keeps a pipe without a writer from
    // blocking.
    if (path.contains('\0'))
        return nullptr;
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return nullptr;
    auto file = std::make_unique<RegularFile>(descriptor);
    return file->size() ? std::move(file) : nullptr;
}

#else
namespace
{
class RegularFile final : public VideoContent
{
public:
    explicit RegularFile(const QString &path) : m_file(path) {}
    bool open()
    {
        return QFileInfo(m_file).isFile() && m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    std::optional<quint64> size() override { return static_cast<quint64>(m_file.size()); }

    bool readExactly(quint64 offset, std::span<char> buffer) override
    {
        const auto length = static_cast<qint64>(buffer.size());
        return m_file.seek(static_cast<qint64>(offset)) && m_file.read(buffer.data(), length) == length;
    }

private:
    QFile m_file;
};
} // namespace

std::unique_ptr<VideoContent> openRegularFile(const QByteArray &path)
{
    auto file = std::make_unique<RegularFile>(QFile::decodeName(path));
    return file->open() ? std::move(file) : nullptr;
}
#endif
