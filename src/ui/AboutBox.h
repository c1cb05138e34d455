#pragma once

#include <QMessageBox>

namespace kelvora {

// "À propos": the program's name and version, and what it is for.
class AboutBox : public QMessageBox {
    Q_OBJECT
public:
    explicit AboutBox(QWidget *parent = nullptr);
};

} // namespace kelvora
