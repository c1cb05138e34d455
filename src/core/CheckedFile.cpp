#include "core/CheckedFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QVarLengthArray>

#include <cerrno>
#include <climits>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace kelvora {

namespace {

// A write cut short by a signal or taken in part is not a failure: go on with the rest.
template <typename Call>
bool retrying(Call call, qint64 *done, int *errorNumber)
{
    for (;;) {
        const ssize_t n = call();
        if (n >= 0) {
            *done = n;
            return true;
        }
        if (errno != EINTR) {
            *errorNumber = errno;
            return false;
        }
    }
}

} // namespace

CheckedFile::CheckedFile(const QString &path)
    : m_path(path)
{
}

CheckedFile::~CheckedFile()
{
    if (m_fd >= 0)
        ::close(m_fd);
    if (!m_temp.isEmpty() && !m_committed)
        ::unlink(m_temp.constData());
}

QString CheckedFile::failure(const QString &path, const QString &reason)
{
    return QStringLiteral("Impossible d'écrire le fichier « %1 » : %2.")
        .arg(QDir::toNativeSeparators(path), reason);
}

QString CheckedFile::reason(int errorNumber)
{
    switch (errorNumber) {
    case ENOSPC:
        return QStringLiteral("plus de place sur le disque");
    case EDQUOT:
        return QStringLiteral("quota du disque dépassé");
    case EFBIG:
        return QStringLiteral("fichier trop grand pour le système");
    case EROFS:
        return QStringLiteral("le disque est en lecture seule");
    case EACCES:
    case EPERM:
        return QStringLiteral("accès refusé");
    case ENOENT:
        return QStringLiteral("le dossier n'existe pas");
    case ENOTDIR:
        return QStringLiteral("un élément du chemin n'est pas un dossier");
    case EISDIR:
        return QStringLiteral("c'est un dossier");
    case EIO:
        return QStringLiteral("erreur d'entrée-sortie du disque");
    case ENAMETOOLONG:
        return QStringLiteral("nom trop long");
    default:
        return QStringLiteral("erreur du système %1 (%2)")
            .arg(errorNumber)
            .arg(QString::fromLocal8Bit(std::strerror(errorNumber)));
    }
}

bool CheckedFile::fail(int errorNumber)
{
    return fail(reason(errorNumber));
}

bool CheckedFile::fail(const QString &why)
{
    if (m_error.isEmpty()) {
        m_error = failure(m_path, why);
        m_reason = why;
    }
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    return false;
}

bool CheckedFile::open()
{
    if (failed())
        return false;
    if (m_path.isEmpty())
        return fail(QStringLiteral("aucun nom de fichier"));
    const QFileInfo info(m_path);
    m_target = info.exists() && info.isSymLink() ? info.canonicalFilePath() : info.absoluteFilePath();
    const QFileInfo target(m_target);
    bool keepMode = false;
    struct stat st {};
    if (target.exists()) {
        if (target.isDir())
            return fail(EISDIR);
        if (::stat(QFile::encodeName(m_target).constData(), &st) != 0)
            return fail(errno);
        if (!S_ISREG(st.st_mode))
            return fail(QStringLiteral("ce n'est pas un fichier ordinaire"));
        keepMode = true;
    }
    // A new file gets the usual rights (the umask applies); a replaced one keeps its own.
    for (int attempt = 0; m_fd < 0; ++attempt) {
        m_temp = QFile::encodeName(m_target) + ".kv"
                 + QByteArray::number(QRandomGenerator::global()->generate(), 36);
        m_fd = ::open(m_temp.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (m_fd < 0 && (errno != EEXIST || attempt == 100)) {
            const int e = errno;
            m_temp.clear();
            return fail(e);
        }
    }
    if (keepMode && ::fchmod(m_fd, st.st_mode & 07777) != 0)
        return fail(errno);
    return true;
}

bool CheckedFile::write(const char *data, qsizetype size)
{
    if (m_fd < 0)
        return fail(EBADF);
    while (size > 0) {
        qint64 done = 0;
        int e = 0;
        if (!retrying([&] { return ::write(m_fd, data, size_t(size)); }, &done, &e))
            return fail(e);
        if (done == 0)
            return fail(ENOSPC);
        data += done;
        size -= qsizetype(done);
        m_size += done;
    }
    return true;
}

bool CheckedFile::write(const iovec *pieces, int count)
{
    if (m_fd < 0)
        return fail(EBADF);
    // The system may take part of the list; the rest goes on in a copy of it.
    QVarLengthArray<iovec, 64> rest(pieces, pieces + count);
    int first = 0;
    while (first < rest.size()) {
        qint64 done = 0;
        int e = 0;
        if (!retrying([&] { return ::writev(m_fd, rest.data() + first, qMin(rest.size() - first, qsizetype(IOV_MAX))); }, &done, &e))
            return fail(e);
        if (done == 0)
            return fail(ENOSPC);
        m_size += done;
        while (first < rest.size() && size_t(done) >= rest[first].iov_len)
            done -= qint64(rest[first++].iov_len);
        if (first < rest.size() && done > 0) {
            rest[first].iov_base = static_cast<char *>(rest[first].iov_base) + done;
            rest[first].iov_len -= size_t(done);
        }
    }
    return true;
}

bool CheckedFile::writeAt(qint64 offset, const QByteArray &bytes)
{
    if (m_fd < 0)
        return fail(EBADF);
    qsizetype at = 0;
    while (at < bytes.size()) {
        qint64 done = 0;
        int e = 0;
        if (!retrying([&] { return ::pwrite(m_fd, bytes.constData() + at, size_t(bytes.size() - at), off_t(offset + at)); }, &done, &e))
            return fail(e);
        if (done == 0)
            return fail(ENOSPC);
        at += qsizetype(done);
    }
    return true;
}

bool CheckedFile::commit()
{
    if (m_fd < 0)
        return fail(EBADF);
    const int fd = m_fd;
    m_fd = -1;
    if (m_durable && ::fsync(fd) != 0) {
        const int e = errno;
        ::close(fd);
        return fail(e);
    }
    if (::close(fd) != 0)
        return fail(errno);
    const QByteArray target = QFile::encodeName(m_target);
    if (!m_atomic && ::unlink(target.constData()) != 0 && errno != ENOENT)
        return fail(errno);
    if (::rename(m_temp.constData(), target.constData()) != 0)
        return fail(errno);
    m_committed = true;
    if (m_durable) {
        // The rename itself is on disk only once its folder is.
        const QByteArray folder = QFile::encodeName(QFileInfo(m_target).absolutePath());
        const int dir = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (dir < 0)
            return fail(errno);
        const bool synced = ::fsync(dir) == 0;
        const int e = errno;
        ::close(dir);
        if (!synced)
            return fail(e);
    }
    return true;
}

bool CheckedFile::writeAll(const QString &path, const QByteArray &bytes, QString *error)
{
    CheckedFile file(path);
    const bool ok = file.open() && file.write(bytes) && file.commit();
    if (!ok && error)
        *error = file.errorString();
    return ok;
}

} // namespace kelvora
