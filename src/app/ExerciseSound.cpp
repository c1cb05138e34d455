#include "app/ExerciseSound.h"

#include "app/GlobalState.h"
#include "core/Logging.h"
#include "core/TextUtils.h"

#include <QPlainTextEdit>
#include <QTextCursor>

namespace kelvora {

ExerciseSound::ExerciseSound(PatternLookup &lookup)
    : m_lookup(lookup)
{
}

RenderResult ExerciseSound::test(QPlainTextEdit &exercise, const SoundSettings &settings,
                                 const TimingPlan &plan)
{
    const GlobalState &state = globalState();
    const QString text = exercise.toPlainText();
    const QTextCursor cursor = exercise.textCursor();

    RenderRequest request;
    request.exerciseText = text;
    // The box counts UTF-16 units; the renderer counts characters.
    request.selectionStart = text::utf16ToCharacter(text, cursor.selectionStart());
    request.selectionLength =
        text::utf16ToCharacter(text, cursor.selectionEnd()) - request.selectionStart;
    request.debfin = settings.debfin;
    request.deb = settings.deb;
    request.fin = settings.fin;
    request.tone = settings.toneSettings(plan);
    request.wavPath = state.paths.testWavPath;
    request.textPath = state.paths.testTextPath;

    RenderResult r = kelvora::test(request, m_lookup);
    if (!r.ok) {
        qCWarning(lcMorse) << "rendering failed:" << r.error;
        return r;
    }
    if (r.trimmedText != text) {
        exercise.setPlainText(r.trimmedText);
        QTextCursor c = exercise.textCursor();
        c.setPosition(int(text::characterToUtf16(r.trimmedText, r.selectionStart)));
        c.setPosition(int(text::characterToUtf16(r.trimmedText,
                                                 r.selectionStart + r.selectionLength)),
                      QTextCursor::KeepAnchor);
        exercise.setTextCursor(c);
    }
    return r;
}

} // namespace kelvora
