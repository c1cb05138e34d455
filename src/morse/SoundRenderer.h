#pragma once

#include "audio/WavHeader.h"
#include "morse/ToneBank.h"

#include <QString>

namespace kelvora {

class PatternLookup;

// The most data a WAV header can count: the RIFF size (data + 36) must fit 32 bits.
inline constexpr quint64 maxWavDataBytes = 0xFFFFFFFFULL - 36;

struct RenderRequest {
    QString exerciseText;           // the exercise box as it stands
    qsizetype selectionStart = 0;   // in characters of exerciseText, 0-based
    qsizetype selectionLength = 0;  // 0: the whole text is sent
    bool debfin = false;            // wrap in the start and end signs
    QString deb;                    // start sign
    QString fin;                    // end sign
    ToneSettings tone;
    QString wavPath;
    QString textPath;
    quint64 maxDataBytes = maxWavDataBytes;
    // Past maxDataBytes: an error that keeps the former files, rather than a cut sound.
    bool refuseLonger = false;
};

struct RenderResult {
    bool ok = false;
    QString error;                  // French: the tone bank, or a file that cannot be written
    QString trimmedText;            // written back into the exercise box
    qsizetype selectionStart = 0;   // the same characters, counted in trimmedText
    qsizetype selectionLength = 0;
    int patternPositions = 0;       // pattern positions sent (added to the ES box)
    quint64 dataBytes = 0;          // as the header says
    bool truncated = false;         // stopped at the size a WAV header can count
    double durationSeconds() const { return double(dataBytes) / sampleRate; }
};

// test: renders the exercise text into the 8-bit mono 8000 Hz WAV file and writes its
// Windows-1252 copy. Both are written in full beside their targets and then put in
// place; when either cannot be written, neither replaces the old one and `ok` is false.
// A failed lookup is skipped (the character sounds as the row found last).
RenderResult test(const RenderRequest &request, PatternLookup &lookup);

// The 44-byte header of the 8-bit mono 8000 Hz sound for `dataSize` bytes of samples.
QByteArray wavHeader(quint32 dataSize);

} // namespace kelvora
