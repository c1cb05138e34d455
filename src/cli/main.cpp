#include "CliApp.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QTextStream>

#include <csignal>
#include <cstdio>

int main(int argc, char *argv[])
{
    // A file that outgrows the size limit is a failed write, told as such, not a kill.
    std::signal(SIGXFSZ, SIG_IGN);
    QCoreApplication app(argc, argv);
    // The commands say what failed in their own message; the word layer's log would say
    // it twice.
    QLoggingCategory::setFilterRules(QStringLiteral("kelvora.words.warning=false"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    QFile in;
    in.open(stdin, QIODevice::ReadOnly);
    const int status = kelvora::cli::run(app.arguments(), QCoreApplication::applicationDirPath(),
                                         out, err, in);
    out.flush();
    err.flush();
    return status;
}
