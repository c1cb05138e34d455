#include "audio/WavReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace kelvora {

namespace {

constexpr quint16 formatPcm = 1;
constexpr quint16 formatExtensible = 0xFFFE;

QString shown(const QString &fileName)
{
    return QDir::toNativeSeparators(fileName);
}

quint32 le32(const char *p)
{
    return qFromLittleEndian<quint32>(p);
}

quint16 le16(const char *p)
{
    return qFromLittleEndian<quint16>(p);
}

// A chunk header that makes sense at `pos`: an identifier of letters, digits or spaces
// and a size that fits in the file (the data chunk may claim more). Used to tell a
// missing pad byte from a present one.
bool plausibleChunkAt(QFile &file, qint64 pos, qint64 fileSize)
{
    if (pos + 8 > fileSize || !file.seek(pos))
        return false;
    const QByteArray header = file.read(8);
    if (header.size() < 8)
        return false;
    for (const char c : header.left(4)) {
        if (!QChar::isLetterOrNumber(uchar(c)) && c != ' ')
            return false;
    }
    return header.startsWith("data") || pos + 8 + le32(header.constData() + 4) <= fileSize;
}

struct FmtResult {
    std::optional<PcmFormat> format;
    QString unsupported; // what is wrong, when the chunk is readable but not playable
};

FmtResult parseFmt(const QByteArray &body)
{
    if (body.size() < 16)
        return {std::nullopt, QString()};
    const char *p = body.constData();
    quint16 tag = le16(p);
    const int channels = le16(p + 2);
    const quint32 rate = le32(p + 4);
    const int bits = le16(p + 14);
    // WAVE_FORMAT_EXTENSIBLE names its real format in the first two bytes of the GUID.
    if (tag == formatExtensible && body.size() >= 26)
        tag = le16(p + 24);
    if (tag != formatPcm)
        return {std::nullopt, QStringLiteral("codage %1").arg(tag)};
    if (bits != 8 && bits != 16)
        return {std::nullopt, QStringLiteral("%1 bits").arg(bits)};
    if (channels < 1 || channels > 2)
        return {std::nullopt, QStringLiteral("%1 voies").arg(channels)};
    if (rate == 0 || rate > 768000)
        return {std::nullopt, QStringLiteral("%1 échantillons par seconde").arg(rate)};
    return {PcmFormat{int(rate), channels, bits == 8 ? PcmSample::UInt8 : PcmSample::Int16},
            QString()};
}

} // namespace

QString WavReader::missingFileMessage(const QString &fileName)
{
    return QStringLiteral("Le fichier « %1 » est introuvable.").arg(shown(fileName));
}

QString WavReader::notWavMessage(const QString &fileName)
{
    return QStringLiteral("Le fichier « %1 » n'est pas un fichier WAV lisible.").arg(shown(fileName));
}

std::optional<WavSound> WavReader::read(const QString &fileName, QString *error)
{
    const auto fail = [&](const QString &message) -> std::optional<WavSound> {
        if (error)
            *error = message;
        return std::nullopt;
    };
    const auto unreadable = [&](const QString &reason) {
        return fail(QStringLiteral("Le fichier « %1 » ne peut pas être lu : %2.")
                        .arg(shown(fileName), reason));
    };

    const QFileInfo info(fileName);
    if (fileName.isEmpty() || !info.exists())
        return fail(missingFileMessage(fileName));
    if (info.isDir())
        return unreadable(QStringLiteral("c'est un dossier"));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file.errorString());

    const qint64 fileSize = file.size();
    const QByteArray head = file.read(12);
    if (head.size() < 12 || !head.startsWith("RIFF") || head.mid(8, 4) != "WAVE")
        return fail(notWavMessage(fileName));

    std::optional<PcmFormat> format;
    QString unsupported;
    qint64 dataPos = -1;
    qint64 dataAnnounced = 0;
    qint64 pos = 12;
    while (pos + 8 <= fileSize && (!format || dataPos < 0)) {
        if (!file.seek(pos))
            return unreadable(file.errorString());
        const QByteArray header = file.read(8);
        if (header.size() < 8)
            break;
        const QByteArray id = header.left(4);
        const qint64 size = le32(header.constData() + 4);
        const qint64 body = pos + 8;
        if (id == "fmt " && !format && unsupported.isEmpty()) {
            const FmtResult fmt = parseFmt(file.read(qMin<qint64>(size, 64)));
            format = fmt.format;
            unsupported = fmt.unsupported;
            if (!unsupported.isEmpty())
                break;
        } else if (id == "data" && dataPos < 0) {
            dataPos = body;
            dataAnnounced = size;
        }
        pos = body + size;
        // Some writers leave out the pad byte of an odd-sized chunk.
        if (size % 2 == 1
            && (plausibleChunkAt(file, pos + 1, fileSize) || !plausibleChunkAt(file, pos, fileSize)))
            ++pos;
    }

    if (!unsupported.isEmpty()) {
        return fail(QStringLiteral("Le fichier « %1 » est dans un format WAV non pris en charge "
                                   "(%2) : seuls les sons PCM 8 ou 16 bits, mono ou stéréo, "
                                   "sont lus.")
                        .arg(shown(fileName), unsupported));
    }
    if (!format || dataPos < 0)
        return fail(notWavMessage(fileName));

    const qint64 available = qMax<qint64>(0, fileSize - dataPos);
    const qint64 wanted = qMin(dataAnnounced, available);
    WavSound sound;
    sound.format = *format;
    if (!file.seek(dataPos))
        return unreadable(file.errorString());
    sound.pcm = file.read(wanted);
    if (sound.pcm.size() < wanted && file.error() != QFileDevice::NoError)
        return unreadable(file.errorString());
    sound.truncated = dataAnnounced > sound.pcm.size();
    sound.pcm.truncate(sound.pcm.size() / format->bytesPerFrame() * format->bytesPerFrame());
    return sound;
}

} // namespace kelvora
