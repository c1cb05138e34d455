#pragma once

namespace kelvora {

// Loads Qt's own French texts (standard buttons such as "Annuler", file dialogs) from
// Debian's qt6-translations-l10n into the running application. False when they are
// not installed: Qt's texts then stay in English.
bool loadQtFrench();

} // namespace kelvora
