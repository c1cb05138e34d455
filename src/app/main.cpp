#include "app/kvglobal.h"
#include "ui/QtFrench.h"

#include <QApplication>

#include <csignal>

int main(int argc, char *argv[])
{
    // A file that outgrows the size limit is a failed write, told as such, not a kill.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kelvora"));
    QApplication::setOrganizationName(QStringLiteral("Kelvora"));
    kelvora::loadQtFrench();
    kelvora::kvglobal::Main(QApplication::arguments());
    return QApplication::exec();
}
