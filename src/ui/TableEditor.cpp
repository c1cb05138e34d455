#include "ui/TableEditor.h"

#include "ui/UserPrompts.h"
#include "ui/WordGridModel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace kelvora {

namespace {

// Courier New where it is installed, else the platform's fixed-pitch font.
QFont gridFont()
{
    QFont font(QStringLiteral("Courier New"));
    if (QFontInfo(font).family() != QLatin1String("Courier New"))
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    return font;
}

} // namespace

TableEditor::TableEditor(const QString &databasePath, const QString &table, const QString &orderColumn,
                         UserPrompts &prompts, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_prompts(prompts)
{
    setObjectName(QStringLiteral("GRILLE"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_model = new WordGridModel(databasePath, table, orderColumn, this);

    auto *page = new QVBoxLayout(this);
    m_grid = new QTableView(this);
    m_grid->setObjectName(QStringLiteral("grdDataGrid"));
    m_grid->setAccessibleName(QStringLiteral("Mots de la table"));
    m_grid->setFont(gridFont());
    m_grid->setModel(m_model);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 6);
    page->addWidget(m_grid, 1); // the grid takes whatever height the bars leave

    m_position = new QLabel(this);
    m_position->setObjectName(QStringLiteral("datPrimaryRS"));
    m_position->setFrameShape(QFrame::StyledPanel);
    page->addWidget(m_position);

    auto *buttons = new QWidget(this);
    buttons->setObjectName(QStringLiteral("picButtons"));
    auto *bar = new QHBoxLayout(buttons);
    bar->setContentsMargins(0, 0, 0, 0);
    const std::pair<const char *, const char *> captions[] = {
        {"cmdAdd", "&Ajouter"}, {"cmdDelete", "&Supprimer"}, {"cmdUpdate", "&Mettre à jour"},
        {"cmdRefresh", "Actualise&r"}, {"cmdClose", "&Fermer"},
    };
    const std::function<void()> actions[] = {
        [this] { add(); }, [this] { removeCurrent(); }, [this] { update(); }, [this] { refresh(); },
        [this] { close(); },
    };
    for (int i = 0; i < 5; ++i) {
        auto *b = new QPushButton(QString::fromUtf8(captions[i].second), buttons);
        b->setObjectName(QString::fromLatin1(captions[i].first));
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, actions[i]);
        bar->addWidget(b);
    }
    page->addWidget(buttons);

    connect(m_grid->selectionModel(), &QItemSelectionModel::currentChanged, this, &TableEditor::showPosition);
    connect(m_model, &QAbstractItemModel::modelReset, this, &TableEditor::showPosition);
    if (!m_model->reload())
        report(m_model->error());
    resize(420, 480);
}

void TableEditor::setCaption(std::function<QString(int)> caption)
{
    m_caption = std::move(caption);
    showCaption();
}

void TableEditor::showCaption()
{
    if (m_caption)
        setWindowTitle(m_caption(m_model->recordCount()));
}

void TableEditor::report(const QString &error)
{
    m_prompts.message(this, QStringLiteral("Data error event hit err:") + error);
}

void TableEditor::showPosition()
{
    const QModelIndex current = m_grid->currentIndex();
    m_position->setText(QStringLiteral("Record: ") + QString::number(current.isValid() ? current.row() + 1 : 0));
}

void TableEditor::add()
{
    showCaption();
    if (m_model->recordCount() == 0 && !m_model->addSeedRow())
        return report(m_model->error());
    // The cursor goes on the new-row line, ready for typing.
    const QModelIndex newLine = m_model->index(m_model->rowCount() - 1, 0);
    m_grid->setFocus();
    m_grid->setCurrentIndex(newLine);
    m_grid->scrollTo(newLine);
}

void TableEditor::removeCurrent()
{
    const int row = m_grid->currentIndex().row();
    if (row < 0 || row >= m_model->recordCount())
        return;
    if (!m_model->removeRow(row))
        return report(m_model->error());
    // The next row, or the last when none follows.
    const int next = std::min(row, m_model->recordCount() - 1);
    if (next >= 0)
        m_grid->setCurrentIndex(m_model->index(next, 0));
    showPosition();
}

void TableEditor::update()
{
    // A cell being typed in counts too.
    QWidget *editor = QApplication::focusWidget();
    if (editor && editor->parentWidget() == m_grid->viewport())
        QMetaObject::invokeMethod(m_grid, "commitData", Q_ARG(QWidget *, editor));
    if (!m_model->save())
        return report(m_model->error());
    for (const QString &notice : m_model->notices())
        report(notice);
}

void TableEditor::refresh()
{
    if (!m_model->reload())
        report(m_model->error());
}

void TableEditor::closeEvent(QCloseEvent *event)
{
    // Typed words are written, never dropped with the window.
    if (m_model->hasPendingEdits())
        update();
    emit closing();
    event->accept();
}

} // namespace kelvora
