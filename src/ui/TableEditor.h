#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QTableView;

namespace kelvora {

class UserPrompts;
class WordGridModel;

// GRILLE, the table editor: one table of the word database in a grid, with "&Ajouter",
// "&Supprimer", "&Mettre à jour", "Actualise&r" and "&Fermer", and "Record: n" for the
// current row. Modeless; it goes away when closed.
class TableEditor : public QWidget {
    Q_OBJECT
public:
    // `table` is shown, ordered by `orderColumn`; `caption` makes the title from a count.
    TableEditor(const QString &databasePath, const QString &table, const QString &orderColumn,
                UserPrompts &prompts, QWidget *parent = nullptr);

    // The title's count: the main window's for a word table, the grid's own for ref.
    void setCaption(std::function<QString(int gridCount)> caption);

    WordGridModel *model() const { return m_model; }
    QTableView *grid() const { return m_grid; }

    void add();
    void removeCurrent();
    void update();
    void refresh();

signals:
    // The editor closes: the main window counts its table again.
    void closing();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void showPosition();
    void showCaption();
    void report(const QString &error);

    UserPrompts &m_prompts;
    WordGridModel *m_model = nullptr;
    QTableView *m_grid = nullptr;
    QLabel *m_position = nullptr;
    std::function<QString(int)> m_caption;
};

} // namespace kelvora
