#pragma once

class QString;
class QTextStream;

namespace kelvora {
class SettingsStore;
struct AppPaths;
}

namespace kelvora::cli {

struct Command;

// kelvora-cli words SUBCOMMAND: the word tables as the window manages them. It never
// writes the settings file; --table defaults to the profile's last table.
int wordsCommand(const Command &c, const SettingsStore &store, const QString &user,
                 const AppPaths &paths, QTextStream &out, QTextStream &err);

} // namespace kelvora::cli
