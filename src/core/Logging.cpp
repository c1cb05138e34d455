// Debug messages are off unless QT_LOGGING_RULES turns them on (e.g. "kelvora.*.debug=true").
#include "core/Logging.h"

Q_LOGGING_CATEGORY(lcApp, "kelvora.app", QtInfoMsg)
Q_LOGGING_CATEGORY(lcMorse, "kelvora.morse", QtInfoMsg)
Q_LOGGING_CATEGORY(lcWords, "kelvora.words", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPlayback, "kelvora.playback", QtInfoMsg)
