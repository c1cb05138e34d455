#pragma once

#include <QByteArray>
#include <QString>

struct iovec;

namespace kelvora {

// A file written the safe way: into a temporary file beside the target, every write
// and the close checked, then renamed over the target. Until commit() nothing is
// replaced, and a failure leaves the target as it was. A target that exists and is not
// a regular file (a folder, a device such as /dev/full) is refused, never replaced. A
// symbolic link is followed: the file it points to is replaced.
//
// After the first failure every call fails and errorString() says, in French, which
// file and why ("Impossible d'écrire le fichier « tmp/test.wav » : plus de place sur
// le disque.").
class CheckedFile {
public:
    explicit CheckedFile(const QString &path);
    ~CheckedFile(); // an uncommitted temporary file is removed
    CheckedFile(const CheckedFile &) = delete;
    CheckedFile &operator=(const CheckedFile &) = delete;

    bool open();
    bool write(const char *data, qsizetype size);
    bool write(const QByteArray &bytes) { return write(bytes.constData(), bytes.size()); }
    // Writes the pieces in order, as one gather list (no copy of large buffers).
    bool write(const iovec *pieces, int count);
    // Overwrites bytes already written (a header completed at the end).
    bool writeAt(qint64 offset, const QByteArray &bytes);
    // Puts the complete file in place of the target.
    bool commit();

    // For a file that can be made again (a rendered sound): the old target is removed
    // just before the rename instead of being replaced by it. A rename over a file makes
    // ext4 write the new one out at once, which doubles the cost of a large render; the
    // price is that a crash between the two steps leaves no file, never a partial one.
    void setReplaceInPlace(bool atomic) { m_atomic = atomic; }
    // For a backup that must survive a crash of what follows it: commit() returns only
    // once the file and its name are on the disk.
    void setDurable(bool durable) { m_durable = durable; }

    qint64 size() const { return m_size; } // bytes written so far
    QString path() const { return m_path; }
    bool failed() const { return !m_error.isEmpty(); }
    QString errorString() const { return m_error; }
    QString reasonString() const { return m_reason; } // the "why" part of errorString()

    // The whole of `bytes` into `path`; false with the French message in *error.
    static bool writeAll(const QString &path, const QByteArray &bytes, QString *error);
    // "Impossible d'écrire le fichier « path » : reason."
    static QString failure(const QString &path, const QString &reason);
    // Why a system call failed, in French, from its errno.
    static QString reason(int errorNumber);

private:
    bool fail(int errorNumber);
    bool fail(const QString &reason);

    QString m_path;   // as given, for messages
    QString m_target; // the file replaced (a link's target)
    QByteArray m_temp;
    int m_fd = -1;
    qint64 m_size = 0;
    bool m_committed = false;
    bool m_atomic = true;
    bool m_durable = false;
    QString m_error;
    QString m_reason;
};

} // namespace kelvora
