#include "morse/SoundRenderer.h"

#include "core/TextUtils.h"
#include "core/Windows1252.h"
#include "morse/PatternLookup.h"

#include "core/CheckedFile.h"

#include <algorithm>
#include <array>

#include <sys/uio.h>

namespace kelvora {

namespace {

// Appends sample buffers to the file, stopping for good at the size limit. The buffers
// of the tone bank are handed to the system as a gather list (writev), so a long text
// costs no copy and no large allocation. The first failed write ends the sound.
class SampleSink {
public:
    SampleSink(CheckedFile &file, quint64 limit)
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
    bool stopped() const { return m_truncated || m_file.failed(); }

    void flush()
    {
        if (m_count > 0 && !m_file.failed())
            m_file.write(m_pieces.data(), m_count);
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
    CheckedFile &m_file;
    quint64 m_limit;
    quint64 m_written = 0;
    bool m_truncated = false;
};

// The part of `text` that is sent: the selection when it holds a character.
QString textToSend(const RenderResult &r)
{
    if (r.selectionLength >= 1)
        return text::characterMid(r.trimmedText, r.selectionStart, r.selectionLength);
    return r.trimmedText;
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
        // Counted so that no sum can overflow, whatever the numbers given.
        const qsizetype from = request.selectionStart - lead; // >= -lead
        const qsizetype begin = std::clamp<qsizetype>(from, 0, count);
        const qsizetype end = request.selectionLength >= count - from
                                  ? count
                                  : std::clamp<qsizetype>(from + request.selectionLength, 0, count);
        r.selectionStart = begin;
        r.selectionLength = std::max<qsizetype>(0, end - begin);
    }

    // Both files are complete before either replaces the one of the last exercise, so
    // that a failure leaves the pair as it was.
    CheckedFile wav(request.wavPath);
    CheckedFile copy(request.textPath);
    // Both are made again at every render: see CheckedFile on the cost of replacing.
    wav.setReplaceInPlace(false);
    copy.setReplaceInPlace(false);
    const auto failed = [&] {
        r.ok = false;
        r.error = wav.failed() ? wav.errorString() : copy.errorString();
        r.dataBytes = 0;
        return r;
    };
    if (!wav.open() || !wav.write(QByteArray(wavHeaderSize, ' ')) || !copy.open()
        || !copy.write(windows1252::encode(r.trimmedText)))
        return failed();

    QString sent = textToSend(r);
    if (request.debfin)
        sent = request.deb + u' ' + sent + u' ' + request.fin;
    sent = text::trimBlanks(sent);

    {
        PatternLookup::Snapshot snapshot(lookup);
        SampleSink sink(wav, request.maxDataBytes);
        const QStringView view(sent);
        for (qsizetype i = 0; i < view.size() && !sink.stopped();) {
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
    if (r.truncated && request.refuseLonger) {
        // The temporary files are dropped; the last exercise's pair stays as it was.
        r.ok = false;
        r.error = QStringLiteral("Le texte donne plus de %1 h de Morse : sélectionnez-en une partie "
                                 "pour l'écouter.")
                      .arg(request.maxDataBytes / (quint64(sampleRate) * 3600));
        r.dataBytes = 0;
        return r;
    }
    r.dataBytes = quint64(wav.size() - wavHeaderSize);
    if (!wav.writeAt(0, wavHeader(quint32(r.dataBytes))) || !wav.commit() || !copy.commit())
        return failed();
    return r;
}

} // namespace kelvora
