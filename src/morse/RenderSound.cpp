#include "morse/RenderSound.h"

#include "morse/TimingCalculator.h"
#include "settings/AppPaths.h"

namespace kelvora {

SoundTarget SoundTarget::exercise(const AppPaths &paths)
{
    return {paths.testWavPath, paths.testTextPath};
}

SoundTarget SoundTarget::player(const AppPaths &paths)
{
    SoundTarget target = exercise(paths);
    target.maxDataBytes = quint64(sampleRate) * 3 * 3600;
    target.refuseLonger = true;
    return target;
}

RenderResult renderSound(const SoundText &text, const SoundSettings &settings,
                         PatternLookup &lookup, const SoundTarget &target)
{
    const TimingResult timing = CALCCONFIG(settings.timingInputs(), lookup);
    if (!timing.ok) {
        RenderResult failed;
        failed.error = timing.error;
        return failed;
    }
    if (timing.plan.dot < 1) {
        // Nothing would sound: an empty file is no exercise.
        RenderResult failed;
        failed.error = QStringLiteral("La vitesse demandée donne un point de %1 ms : aucun son "
                                      "ne peut être fait.")
                           .arg(timing.plan.dot);
        return failed;
    }
    RenderRequest request;
    request.exerciseText = text.text;
    request.selectionStart = text.selectionStart;
    request.selectionLength = text.selectionLength;
    request.debfin = settings.debfin;
    request.deb = settings.deb;
    request.fin = settings.fin;
    request.tone = settings.toneSettings(timing.plan);
    request.wavPath = target.wavPath;
    request.textPath = target.textPath;
    request.maxDataBytes = target.maxDataBytes;
    request.refuseLonger = target.refuseLonger;
    return test(request, lookup);
}

} // namespace kelvora
