#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

// A pseudo-terminal pair made by socat, standing for a serial port: port 1 is one end
// (`stem() + "1"`), any other port number is absent.
namespace kelvora::testsupport {

class PtyPair {
public:
    // Empty when the pair is up, otherwise why not.
    QString start()
    {
        const QString socat = QStandardPaths::findExecutable(QStringLiteral("socat"));
        if (socat.isEmpty())
            return QStringLiteral("socat is not installed: no pseudo-terminal pair");
        // Names unique to this process: the serial layer keeps lock files named after them.
        m_stem = m_dir.filePath(QStringLiteral("kvptt%1_").arg(QCoreApplication::applicationPid()));
        m_socat.start(socat, {"-d", "-d", "pty,raw,echo=0,link=" + m_stem + "1", "pty,raw,echo=0,link=" + m_stem + "peer"});
        QDeadlineTimer deadline(20000);
        while (m_socat.waitForStarted(10000) && !(QFileInfo::exists(m_stem + "1") && QFileInfo::exists(m_stem + "peer"))) {
            if (deadline.hasExpired())
                return QStringLiteral("socat made no pseudo-terminals");
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        }
        return m_socat.state() == QProcess::Running ? QString() : QStringLiteral("socat did not start");
    }
    ~PtyPair()
    {
        m_socat.kill();
        m_socat.waitForFinished(10000);
    }
    QString stem() const { return m_stem; } // port N is stem() + N
    // What KELVORA_PTT_DEVICE_TEMPLATE must hold for port N to be stem() + N.
    QString deviceTemplate() const { return m_stem + "%2"; }

private:
    QTemporaryDir m_dir;
    QProcess m_socat;
    QString m_stem;
};

// How many descriptors of this process hold the terminal behind `path` (Linux): held
// open, its lines are up.
inline int openHandles(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    int count = 0;
    for (const QFileInfo &fd : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::System | QDir::Files))
        count += fd.symLinkTarget() == target;
    return count;
}

} // namespace kelvora::testsupport
