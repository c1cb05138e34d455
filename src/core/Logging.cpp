#include "core/Logging.h"

Q_LOGGING_CATEGORY(lcApp, "kelvora.app")
Q_LOGGING_CATEGORY(lcMorse, "kelvora.morse")
Q_LOGGING_CATEGORY(lcWords, "kelvora.words")
Q_LOGGING_CATEGORY(lcPlayback, "kelvora.playback")
