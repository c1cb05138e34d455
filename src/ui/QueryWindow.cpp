#include "ui/QueryWindow.h"

#include "settings/Session.h"
#include "ui/UserPrompts.h"
#include "ui/WordTableArea.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>

namespace kelvora {

namespace {

using queryComposer::Piece;

struct PieceButton {
    Piece piece;
    const char *name;
    const char *caption;
};

// In the order of Piece: the connectives, then the eight conditions.
constexpr PieceButton pieceButtons[] = {
    {Piece::And, "Command1", "ET"},
    {Piece::Or, "Command2", "OU"},
    {Piece::AtLeast, "Command3", "D' au moins "},
    {Piece::AtMost, "Command4", "D' au plus"},
    {Piece::HasLetters, "Command5", "Contenant la ou les lettres"},
    {Piece::LacksLetters, "Command6", "Ne contenant pas la ou les lettres"},
    {Piece::HasString, "Command7", "Contenant la chaine"},
    {Piece::LacksString, "Command8", "Ne contenant pas la chaine"},
    {Piece::StartsWith, "Command9", "Qui commencent par la chaine"},
    {Piece::EndsWith, "Command10", "Qui finissent par la chaine"},
};

QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
}

} // namespace

QueryWindow::QueryWindow(Session &session, WordTableArea &area, UserPrompts &prompts, Hooks hooks,
                         QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_session(session)
    , m_area(area)
    , m_prompts(prompts)
    , m_hooks(std::move(hooks))
{
    setObjectName(QStringLiteral("Fsql"));
    auto *page = new QVBoxLayout(this);

    auto *nameRow = new QHBoxLayout;
    auto *label3 = new QLabel(QStringLiteral("Nom de la requette"), this);
    label3->setObjectName(QStringLiteral("Label3"));
    auto *text1 = new QLineEdit(this);
    text1->setObjectName(QStringLiteral("Text1"));
    text1->setToolTip(QStringLiteral("Un nom pour vous repérer : la requête n'est pas enregistrée"));
    label3->setBuddy(text1);
    nameRow->addWidget(label3);
    nameRow->addWidget(text1, 1);
    page->addLayout(nameRow);

    m_rq = new QPlainTextEdit(this);
    m_rq->setObjectName(QStringLiteral("rq"));
    m_rq->setAccessibleName(QStringLiteral("Requête composée"));
    m_rq->setToolTip(QStringLiteral("La condition composée avec les boutons ; vous pouvez aussi l'écrire"));
    m_rq->setFixedHeight(m_rq->fontMetrics().lineSpacing() * 4 + 12);
    page->addWidget(m_rq);

    auto *grid = new QGridLayout;
    for (int i = 0; i < 10; ++i)
        m_pieces[i] = button(this, pieceButtons[i].name, QString::fromUtf8(pieceButtons[i].caption));
    m_moins = new QComboBox(this);
    m_moins->setObjectName(QStringLiteral("moins"));
    m_moins->setAccessibleName(QStringLiteral("Longueur minimale"));
    m_plus = new QComboBox(this);
    m_plus->setObjectName(QStringLiteral("plus"));
    m_plus->setAccessibleName(QStringLiteral("Longueur maximale"));
    for (int n = 1; n <= 26; ++n) {
        m_moins->addItem(QString::number(n));
        m_plus->addItem(QString::number(n));
    }
    auto *label1 = new QLabel(QStringLiteral("Caractéres"), this);
    label1->setObjectName(QStringLiteral("Label1"));
    auto *label2 = new QLabel(QStringLiteral("Caractéres"), this);
    label2->setObjectName(QStringLiteral("Label2"));
    m_ch = new QLineEdit(QStringLiteral("test"), this);
    m_ch->setObjectName(QStringLiteral("ch"));
    m_ch->setAccessibleName(QStringLiteral("Lettres ou chaîne"));
    m_ch->setToolTip(QStringLiteral("Les lettres ou la chaîne que les boutons ci-dessous cherchent"));
    auto *accents = button(this, "Command13", QStringLiteral("Accents et spéciaux"));
    auto *chLabel = new QLabel(QStringLiteral("Lettres ou chaîne"), this);
    chLabel->setBuddy(m_ch);

    grid->addWidget(m_pieces[0], 0, 0);
    grid->addWidget(m_pieces[1], 0, 1);
    grid->addWidget(m_pieces[2], 1, 0);
    auto *least = new QHBoxLayout;
    least->addWidget(m_moins);
    least->addWidget(label1);
    least->addStretch();
    grid->addLayout(least, 1, 1);
    grid->addWidget(m_pieces[3], 2, 0);
    auto *most = new QHBoxLayout;
    most->addWidget(m_plus);
    most->addWidget(label2);
    most->addStretch();
    grid->addLayout(most, 2, 1);
    auto *chRow = new QHBoxLayout;
    chRow->addWidget(chLabel);
    chRow->addWidget(m_ch, 1);
    grid->addLayout(chRow, 3, 0);
    grid->addWidget(accents, 3, 1);
    for (int i = 4; i < 10; ++i)
        grid->addWidget(m_pieces[i], 4 + (i - 4) / 2, (i - 4) % 2);
    page->addLayout(grid);

    auto *endRow = new QHBoxLayout;
    auto *progress = button(this, "Command14", QStringLiteral("req sur progress"));
    progress->setToolTip(QStringLiteral("Les mots faits des seuls caractères de la progression"));
    auto *raz = button(this, "Command12", QStringLiteral("R.A.Z"));
    raz->setToolTip(QStringLiteral("Efface la requête et les lettres"));
    auto *ok = button(this, "Command11", QStringLiteral("OK- FIN"));
    ok->setToolTip(QStringLiteral("Applique la requête à la table et ferme la fenêtre"));
    endRow->addWidget(progress);
    endRow->addStretch();
    endRow->addWidget(raz);
    endRow->addWidget(ok);
    page->addLayout(endRow);

    for (int i = 0; i < 10; ++i) {
        const Piece piece = pieceButtons[i].piece;
        connect(m_pieces[i], &QPushButton::clicked, this, [this, piece] { press(piece); });
        // At the start a condition comes first.
        m_pieces[i]->setEnabled(i >= 2);
    }
    connect(ok, &QPushButton::clicked, this, &QueryWindow::finish);
    connect(raz, &QPushButton::clicked, this, &QueryWindow::reset);
    connect(accents, &QPushButton::clicked, this, &QueryWindow::accentsAndSpecials);
    connect(progress, &QPushButton::clicked, this, &QueryWindow::progressionQuery);
    showCaption();
}

QPushButton *QueryWindow::pieceButton(Piece piece) const
{
    return m_pieces[int(piece)];
}

void QueryWindow::setBackground(const QPalette &window)
{
    // The main window's colours, its text colour too, so that the labels stay readable.
    QPalette p = palette();
    for (QPalette::ColorRole role : {QPalette::Window, QPalette::WindowText})
        p.setColor(role, window.color(role));
    setPalette(p);
    setAutoFillBackground(true);
}

void QueryWindow::press(Piece piece)
{
    m_rq->setPlainText(m_rq->toPlainText() + queryComposer::piece(piece, m_ch->text(),
                                                                  piece == Piece::AtLeast ? m_moins->currentText()
                                                                                          : m_plus->currentText()));
    refresh();
}

void QueryWindow::refresh()
{
    // Condition and connective in turn.
    for (QPushButton *b : m_pieces)
        b->setEnabled(!b->isEnabled());
    m_rq->moveCursor(QTextCursor::End);
    const QString neutral = QString::fromLatin1(queryComposer::neutral);
    m_area.setQueryText(m_rq->toPlainText());
    if (m_rq->toPlainText().isEmpty())
        m_rq->setPlainText(neutral);
    const QString condition = m_rq->toPlainText();
    if (condition == neutral)
        m_rq->clear(); // the neutral condition is never shown
    // A condition that ends with its connective is refused until the next piece.
    if (!m_area.applyCondition(condition)) {
        emit notice(queryComposer::finished(condition) != condition
                        ? QStringLiteral("La requête finit par « ET » ou « OU » : ajoutez une condition.")
                        : m_area.error());
        m_told = true;
    } else if (m_told) { // the next piece made it whole: the warning no longer holds
        emit notice(QString());
        m_told = false;
    }
    showCaption();
}

void QueryWindow::showCaption()
{
    setWindowTitle(m_hooks.banner ? m_hooks.banner() : QString());
}

void QueryWindow::finish()
{
    const QString condition = queryComposer::finished(m_rq->toPlainText());
    m_rq->setPlainText(condition);
    m_area.setQueryText(condition);
    if (condition.isEmpty())
        m_rq->setPlainText(QString::fromLatin1(queryComposer::neutral));
    if (!m_area.applyCondition(m_rq->toPlainText())) {
        m_prompts.message(this, QStringLiteral("Votre requette ne fonctionne pas veuillez la reformuler s.v.p. ! "));
        return;
    }
    emit finished();
    hide();
}

void QueryWindow::reset()
{
    m_ch->clear();
    m_rq->clear();
    if (m_pieces[0]->isEnabled())
        refresh();
}

void QueryWindow::accentsAndSpecials()
{
    m_ch->setText(QStringLiteral("éèêëâàäïîôöûüùç€-"));
}

void QueryWindow::progressionQuery()
{
    m_rq->setPlainText(queryComposer::progressionCondition(m_hooks.progression ? m_hooks.progression() : QString()));
}

} // namespace kelvora
