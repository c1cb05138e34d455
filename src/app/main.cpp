#include "app/kvglobal.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kelvora"));
    QApplication::setOrganizationName(QStringLiteral("Kelvora"));
    kelvora::kvglobal::Main(QApplication::arguments());
    return QApplication::exec();
}
