#include "app/FoundationWindow.h"

#include "Version.h"
#include "app/GlobalState.h"
#include "app/SettingsStore.h"
#include "core/Numbers.h"
#include "core/TextUtils.h"
#include "morse/PatternLookup.h"
#include "morse/SoundRenderer.h"
#include "morse/SoundSettings.h"
#include "words/WordDatabase.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>

namespace kelvora {

FoundationWindow::FoundationWindow(const QString &settingsPath, QWidget *parent)
    : QWidget(parent)
    , m_store(std::make_unique<SettingsStore>(settingsPath))
{
    GlobalState &state = globalState();
    state.currentUser = m_store->lastUser();
    const QString table = m_store->value(state.currentUser, userKeys::lasttable);
    state.currentTable = table.isEmpty() ? QStringLiteral("mot") : table;

    m_refDatabase = std::make_unique<WordDatabase>(state.paths.wordDatabasePath);
    m_lookup = std::make_unique<PatternLookup>(*m_refDatabase);

    m_exo = new QPlainTextEdit(this);
    m_exo->setObjectName(QStringLiteral("EXO"));
    m_exo->setAccessibleName(QStringLiteral("Texte de l'exercice"));
    m_exo->setToolTip(QStringLiteral("Texte de l'exercice"));
    QFont font = m_exo->font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    m_exo->setFont(font);
    m_exo->setPlainText(QStringLiteral("73 ") + state.currentUser + QStringLiteral(" de F4KLV"));

    m_prepare = new QPushButton(QStringLiteral("Préparer la musique"), this);
    m_prepare->setObjectName(QStringLiteral("Command1"));
    m_prepare->setAccessibleName(QStringLiteral("Préparer la musique"));
    m_prepare->setToolTip(QStringLiteral("Écrit le son de l'exercice dans tmp/test.wav"));
    connect(m_prepare, &QPushButton::clicked, this, &FoundationWindow::prepareSound);

    m_banner = new QLabel(this);
    m_banner->setObjectName(QStringLiteral("bandeau"));
    m_banner->setAccessibleName(QStringLiteral("Bandeau"));
    QFont bannerFont = m_banner->font();
    bannerFont.setBold(true);
    m_banner->setFont(bannerFont);

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("status"));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_prepare);
    buttons->addWidget(m_status, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_banner);
    layout->addWidget(m_exo, 1);
    layout->addLayout(buttons);

    resize(720, 480);
    affichebandeau();
    if (!m_refDatabase->isOpen())
        m_status->setText(m_refDatabase->errorString());
}

FoundationWindow::~FoundationWindow() = default;

void FoundationWindow::affichebandeau()
{
    const GlobalState &state = globalState();
    WordDatabase db(state.paths.wordDatabasePath, WordDatabase::OpenMode::ReadOnly);
    const QueryResult count = db.query(QStringLiteral("select count(*) from ") + state.currentTable);
    const QString rows =
        count.ok && !count.rows.empty() ? count.rows.front().value(0).toString() : QStringLiteral("0");
    setWindowTitle(QStringLiteral("Kelvora Version %1.%2.%3, Table : %4 (%5),   Utilisateur=%6")
                       .arg(version::major)
                       .arg(version::minor)
                       .arg(version::revision)
                       .arg(state.currentTable, rows, state.currentUser));
    m_banner->setText(windowTitle());
}

bool FoundationWindow::prepareSound()
{
    const GlobalState &state = globalState();
    const SoundSettings settings = SoundSettings::fromProfile(*m_store, state.currentUser);
    const TimingResult timing = CALCCONFIG(settings.timingInputs(), *m_lookup);
    if (!timing.ok) {
        QMessageBox::warning(this, QStringLiteral("Kelvora"), timing.error);
        return false;
    }

    const QString text = m_exo->toPlainText();
    const QTextCursor cursor = m_exo->textCursor();
    RenderRequest request;
    request.exerciseText = text;
    request.selectionStart = text::utf16ToCharacter(text, cursor.selectionStart());
    request.selectionLength =
        text::utf16ToCharacter(text, cursor.selectionEnd()) - request.selectionStart;
    request.debfin = settings.debfin;
    request.deb = settings.deb;
    request.fin = settings.fin;
    request.tone = settings.toneSettings(timing.plan);
    request.wavPath = state.paths.testWavPath;
    request.textPath = state.paths.testTextPath;

    const RenderResult r = test(request, *m_lookup);
    if (!r.ok) {
        QMessageBox::warning(this, QStringLiteral("Kelvora"), r.error);
        return false;
    }
    if (r.trimmedText != text) {
        m_exo->setPlainText(r.trimmedText);
        QTextCursor c = m_exo->textCursor();
        c.setPosition(text::characterToUtf16(r.trimmedText, r.selectionStart));
        c.setPosition(text::characterToUtf16(r.trimmedText, r.selectionStart + r.selectionLength),
                      QTextCursor::KeepAnchor);
        m_exo->setTextCursor(c);
    }
    m_status->setText(QStringLiteral("tmp/test.wav : %1 s").arg(numbers::format(r.durationSeconds())));
    return true;
}

} // namespace kelvora
