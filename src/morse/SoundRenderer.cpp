#include "morse/SoundRenderer.h"

#include "core/TextUtils.h"
#include "core/Windows1252.h"
#include "morse/PatternLookup.h"

#include <QFile>

#include <algorithm>
#include <array>

#ifdef Q_OS_UNIX
#include <sys/uio.h>
#endif

namespace kelvora {

namespace {

// Appends sample buffers to the open file, stopping for good at the size limit. The
// buffers of the tone bank are handed to the system as a gather list (writev), so a
// long text costs no copy and no large allocation; elsewhere they go through a block.
// Write errors are skipped: the header is made from the file's real length afterwards.
class SampleSink {
public:
    SampleSink(QFile &file, quint64 limit)
        : m_file(file)
        , m_limit(limit)
    {
    }
    ~SampleSink() { flush(); }

    void append(const QByteArray &samples)
    {
        if (m_truncated || samples.isEmpty())
            return;
        qsizetype size = samples.size();
        if (m_written + quint64(size) > m_limit) {
            size = qsizetype(m_limit - m_written);
            m_truncated = true;
        }
        m_written += quint64(size);
        if (size > 0)
            add(samples.constData(), size);
    }

    bool truncated() const { return m_truncated; }

#ifdef Q_OS_UNIX
    void flush()
    {
        const int fd = m_file.isOpen() ? m_file.handle() : -1;
        int first = 0;
        while (fd >= 0 && first < m_count) {
            ssize_t done = ::writev(fd, m_pieces.data() + first, m_count - first);
            if (done <= 0)
                break;
            // A short write: skip what went out and go on with the rest.
            while (first < m_count && size_t(done) >= m_pieces[first].iov_len)
                done -= ssize_t(m_pieces[first++].iov_len);
            if (first < m_count && done > 0) {
                m_pieces[first].iov_base = static_cast<char *>(m_pieces[first].iov_base) + done;
                m_pieces[first].iov_len -= size_t(done);
            }
        }
        m_count = 0;
    }

private:
    void add(const char *data, qsizetype size)
    {
        if (m_count == int(m_pieces.size()))
            flush();
        m_pieces[m_count++] = iovec{const_cast<char *>(data), size_t(size)};
    }

    std::array<iovec, 1024> m_pieces{};
    int m_count = 0;
#else
    void flush()
    {
        if (!m_block.isEmpty() && m_file.isOpen())
            m_file.write(m_block);
        m_block.clear();
    }

private:
    void add(const char *data, qsizetype size)
    {
        if (m_block.size() + size > blockSize)
            flush();
        if (size >= blockSize)
            m_file.write(data, size);
        else
            m_block.append(data, size);
    }

    static constexpr qsizetype blockSize = 1 << 16;
    QByteArray m_block;
#endif

    QFile &m_file;
    quint64 m_limit;
    quint64 m_written = 0;
    bool m_truncated = false;
};

void writeTextCopy(const QString &path, const QString &text)
{
    QFile::remove(path);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(windows1252::encode(text));
}

// The part of `text` that is sent: the selection when it holds a character.
QString textToSend(const RenderResult &r)
{
    if (r.selectionLength >= 1)
        return text::characterMid(r.trimmedText, r.selectionStart, r.selectionLength);
    return r.trimmedText;
}

void writeHeader(const QString &path, RenderResult &r)
{
    // Opening for writing would create a file that could not be made earlier.
    if (!QFile::exists(path))
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return;
    const qint64 length = file.size();
    const quint64 data = length > wavHeaderSize ? quint64(length - wavHeaderSize) : 0;
    r.dataBytes = std::min<quint64>(data, maxWavDataBytes);
    file.seek(0);
    file.write(wavHeader(quint32(r.dataBytes)));
}

} // namespace

QByteArray wavHeader(quint32 dataSize)
{
    return wavHeader(PcmFormat{sampleRate, 1, PcmSample::UInt8}, dataSize);
}

RenderResult test(const RenderRequest &request, PatternLookup &lookup)
{
    RenderResult r;
    const auto bank = calech(request.tone, &r.error);
    if (!bank)
        return r;
    r.ok = true;

    r.trimmedText = text::trimBlanks(request.exerciseText);
    // The selection keeps the same characters when leading blanks are trimmed away.
    if (request.selectionLength > 0) {
        const qsizetype lead =
            text::utf16ToCharacter(request.exerciseText, text::leadingBlanks(request.exerciseText));
        const qsizetype count = text::characterCount(r.trimmedText);
        const qsizetype begin = std::clamp<qsizetype>(request.selectionStart - lead, 0, count);
        const qsizetype end = std::clamp<qsizetype>(
            request.selectionStart + request.selectionLength - lead, 0, count);
        r.selectionStart = begin;
        r.selectionLength = std::max<qsizetype>(0, end - begin);
    }

    writeTextCopy(request.textPath, r.trimmedText);

    QFile::remove(request.wavPath);
    QFile wav(request.wavPath);
    if (wav.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        wav.write(QByteArray(wavHeaderSize, ' '));

    QString sent = textToSend(r);
    if (request.debfin)
        sent = request.deb + u' ' + sent + u' ' + request.fin;
    sent = text::trimBlanks(sent);

    {
        PatternLookup::Snapshot snapshot(lookup);
        SampleSink sink(wav, request.maxDataBytes);
        const QStringView view(sent);
        for (qsizetype i = 0; i < view.size() && !sink.truncated();) {
            const qsizetype width = text::characterWidth(view, i);
            const qsizetype next = i + width;
            if (view[i] == u' ') {
                sink.append(bank->wordGap);
            } else {
                const QString pattern = lookup.findPattern(sent.mid(i, width));
                for (qsizetype j = 0; j < pattern.size();) {
                    const qsizetype step = text::characterWidth(pattern, j);
                    if (pattern[j] == u'.')
                        sink.append(bank->dot);
                    else if (pattern[j] == u'-')
                        sink.append(bank->dash);
                    ++r.patternPositions;
                    j += step;
                    if (j < pattern.size())
                        sink.append(bank->elementGap);
                }
                if (next < view.size() && view[next] != u' ')
                    sink.append(bank->letterGap);
            }
            i = next;
        }
        r.truncated = sink.truncated();
    }
    wav.close();
    writeHeader(request.wavPath, r);
    return r;
}

} // namespace kelvora
