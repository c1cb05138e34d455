#pragma once

class QIODevice;
class QString;
class QTextStream;

namespace kelvora {
struct AppPaths;
}

namespace kelvora::cli {

struct Command;

// kelvora-cli transform groups|accents|reverse|spaces: the tools of the "Outils" menu on
// --text, --file (Windows-1252) or standard input; the result exactly, nothing added.
int transformCommand(const Command &c, QIODevice &in, QTextStream &out, QTextStream &err);

// kelvora-cli textfile NAME [--append TEXT]: the exercise text that loading textes/NAME
// in the window gives (after TEXT and a blank with --append).
int textFileCommand(const Command &c, const AppPaths &paths, QTextStream &out, QTextStream &err);

} // namespace kelvora::cli
