#include "ui/AboutBox.h"

#include "settings/MainTexts.h"
#include "ui/MorseKeyArt.h"

namespace kelvora {

AboutBox::AboutBox(QWidget *parent)
    : QMessageBox(parent)
{
    setObjectName(QStringLiteral("aboutWindow"));
    setWindowTitle(QStringLiteral("À propos de Kelvora"));
    setTextFormat(Qt::RichText);
    setText(QStringLiteral("<h3>Kelvora</h3><p>") + mainTexts::versionText()
            + QStringLiteral("</p>"));
    setInformativeText(mainTexts::aboutParagraph());
    setIconPixmap(morseKeyArt::icon().pixmap(64, 64));
    setStandardButtons(QMessageBox::Ok);
    setAccessibleName(QStringLiteral("À propos de Kelvora"));
}

} // namespace kelvora
