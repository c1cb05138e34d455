#pragma once

class QIODevice;

#include <QString>
#include <QStringList>

#include <map>
#include <optional>

namespace kelvora::cli {

inline constexpr int exitOk = 0;
inline constexpr int exitError = 2;
inline constexpr int exitCut = 1; // a sound stopped at the WAV size limit

// Bad usage: the message, then the usage text, and exit status 2.
struct UsageError {
    QString message;
};

// The command line taken apart: options with their values, and the other words.
struct Command {
    std::map<QString, QString> options;
    QStringList positional;
};

inline std::optional<QString> option(const Command &c, const QString &name)
{
    const auto it = c.options.find(name);
    if (it == c.options.end())
        return std::nullopt;
    return it->second;
}

inline bool hasFlag(const Command &c, const QString &name)
{
    return c.options.count(name) > 0;
}

// The text a command works on: --text, --file (Windows-1252) or standard input (UTF-8,
// one trailing line end dropped).
QString readText(const Command &c, QIODevice &in);

} // namespace kelvora::cli
