#pragma once

class QStackedWidget;
class QWidget;

namespace kelvora::accessibility {

// Gives drop-downs an accessible interface of their own: with Qt's, on Linux, a combo
// box is named by its current value ("36", "mot"), so a screen reader cannot tell them
// apart. Ours is named after the combo's accessible name (its label), its value apart.
// Called once, before the windows are shown.
void install();

// Names, after its label, each control under `root` that has no accessible name yet,
// and the text box and pop-up list inside each drop-down.
void nameControls(QWidget *root);

// Qt reports the items of a list on a hidden page as showing (it only looks at where
// they would be drawn). The rows of the lists on the pages of `pages` that are not on
// screen are hidden, and shown again with their page; the items themselves stay.
void hideItemsOfHiddenPages(QStackedWidget *pages);

} // namespace kelvora::accessibility
