#pragma once

#include <QStringList>

class QIODevice;
class QTextStream;

namespace kelvora::cli {

// kelvora-cli: the sound engine from the command line. Returns the exit status:
// 0 on success, 2 on bad usage or error (the message is on `err`, in French).
int run(const QStringList &arguments, const QString &executableDir, QTextStream &out,
        QTextStream &err, QIODevice &in);

QString usage();

} // namespace kelvora::cli
