#include "panels/SoundSettingsPanel.h"

#include "ui_SoundSettingsPanel.h"

#include "ui/UserPrompts.h"
#include "settings/SettingKeys.h"
#include "core/Numbers.h"
#include "morse/TimingCalculator.h"

#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QTextDocument>
#include <QtMath>

#include <cmath>

namespace kelvora {

SoundSettingsPanel::SoundSettingsPanel(PatternLookup &lookup, UserPrompts &prompts,
                                       QWidget *parent)
    : QWidget(parent)
    , m_lookup(lookup)
    , m_prompts(prompts)
    , m_ui(std::make_unique<Ui::SoundSettingsPanel>())
{
    m_ui->setupUi(this);
    setObjectName(QStringLiteral("Frame1"));

    // No inline completion: it would turn a typed "2" into "20" before the speed rule
    // sees it.
    for (QComboBox *box : {m_ui->VITESSE, m_ui->FRE, m_ui->VOL, m_ui->MOT, m_ui->SUP})
        box->setCompleter(nullptr);

    QTextEdit *summary = m_ui->infohandicape;
    connect(summary->document()->documentLayout(),
            &QAbstractTextDocumentLayout::documentSizeChanged, this,
            &SoundSettingsPanel::fitSummaryBox);
    summary->setPlainText(soundPresets::handicappedSummary());

    // The main window blinks "Valider" by blanking its caption: keep its width so the
    // row of buttons does not jump.
    m_ui->command2->setMinimumWidth(m_ui->command2->sizeHint().width());

    fillLists();
    showDefaults();
    connectRules();
}

SoundSettingsPanel::~SoundSettingsPanel()
{
    // Closing the panel takes the focus out of a box, and a drop-down then reports a
    // choice: no rule may run once this part of the object is gone.
    for (QObject *child : findChildren<QObject *>()) {
        child->removeEventFilter(this);
        child->disconnect(this);
    }
}

void SoundSettingsPanel::fillLists()
{
    m_ui->VITESSE->addItems(soundPresets::speedChoices());
    m_ui->FRE->addItems(soundPresets::frequencyChoices());
    m_ui->VOL->addItems(soundPresets::volumeChoices());
    m_ui->SUP->addItems(soundPresets::thinkingTimeChoices());
    m_ui->MOT->addItems(soundPresets::referenceWordChoices());
    m_ui->GRMIN->addItems(soundPresets::groupLengthChoices());
    m_ui->GRMAX->addItems(soundPresets::groupLengthChoices());
}

void SoundSettingsPanel::showDefaults()
{
    namespace k = userKeys;
    const std::pair<QComboBox *, SettingKey> combos[] = {
        {m_ui->VITESSE, k::vitesse}, {m_ui->MOT, k::mot},     {m_ui->FRE, k::frequence},
        {m_ui->VOL, k::volume},      {m_ui->SUP, k::sup},     {m_ui->GRMIN, k::grmin},
        {m_ui->GRMAX, k::grmax},
    };
    for (const auto &[box, key] : combos) {
        const QString text = QString::fromUtf8(key.defaultValue);
        // Highlight the matching entry when the list is opened; "127" has none.
        const int index = box->findText(text);
        box->setCurrentIndex(index);
        if (box->isEditable())
            box->setEditText(text);
    }
    const std::pair<QLineEdit *, SettingKey> edits[] = {
        {m_ui->CT, k::ct}, {m_ui->CS, k::cs},   {m_ui->CL, k::cl},
        {m_ui->CM, k::cm}, {m_ui->DEB, k::deb}, {m_ui->FIN, k::fin},
    };
    for (const auto &[box, key] : edits)
        box->setText(QString::fromUtf8(key.defaultValue));
}

void SoundSettingsPanel::connectRules()
{
    Ui::SoundSettingsPanel &ui = *m_ui;
    connect(ui.VITESSE, &QComboBox::editTextChanged, this, &SoundSettingsPanel::onSpeedChanged);
    connect(ui.VITESSE, &QComboBox::activated, this, &SoundSettingsPanel::recalculate);
    // The frequency is not part of the timing; the recalculation is harmless and kept.
    connect(ui.FRE, &QComboBox::editTextChanged, this, &SoundSettingsPanel::onFrequencyChanged);
    connect(ui.FRE, &QComboBox::activated, this, &SoundSettingsPanel::recalculate);
    connect(ui.VOL, &QComboBox::editTextChanged, this, &SoundSettingsPanel::onVolumeChanged);
    connect(ui.MOT, &QComboBox::activated, this, &SoundSettingsPanel::recalculate);
    // Leaving these boxes recalculates. CT deliberately has no rule: a new dash length
    // is heard only after another trigger.
    for (QWidget *box : {static_cast<QWidget *>(ui.VITESSE), static_cast<QWidget *>(ui.MOT),
                         static_cast<QWidget *>(ui.CS), static_cast<QWidget *>(ui.CL),
                         static_cast<QWidget *>(ui.CM)})
        box->installEventFilter(this);

    connect(ui.command2, &QPushButton::clicked, this, &SoundSettingsPanel::onValidate);
    connect(ui.examen, &QPushButton::clicked, this, &SoundSettingsPanel::applyExaminationPreset);
    connect(ui.handicape, &QPushButton::clicked, this,
            &SoundSettingsPanel::applyHandicappedPreset);
    connect(ui.memoriser, &QPushButton::clicked, this, &SoundSettingsPanel::memoriseRequested);
    connect(ui.tester, &QPushButton::clicked, this, &SoundSettingsPanel::onTest);
    connect(ui.editreftable, &QPushButton::clicked, this,
            &SoundSettingsPanel::editReferenceRequested);
}

bool SoundSettingsPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        // Opening the box's own list or switching to another window is not leaving it.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            CALCCONFIG();
    }
    return QWidget::eventFilter(watched, event);
}

void SoundSettingsPanel::onSpeedChanged(const QString &text)
{
    const QString clamped = soundRules::clampSpeed(text);
    if (clamped != text) {
        // The change this makes comes back here and recalculates with the bound.
        m_ui->VITESSE->setEditText(clamped);
        return;
    }
    CALCCONFIG();
}

void SoundSettingsPanel::onFrequencyChanged(const QString &text)
{
    const QString clamped = soundRules::clampFrequency(text);
    if (clamped != text) {
        m_ui->FRE->setEditText(clamped);
        return;
    }
    CALCCONFIG();
}

void SoundSettingsPanel::onVolumeChanged(const QString &text)
{
    const QString clamped = soundRules::clampVolume(text);
    if (clamped != text)
        m_ui->VOL->setEditText(clamped);
}

void SoundSettingsPanel::recalculate()
{
    CALCCONFIG();
}

void SoundSettingsPanel::onValidate()
{
    // A failed calculation keeps the panel open: the user has to correct the counts.
    if (CALCCONFIG())
        emit validated();
}

void SoundSettingsPanel::onTest()
{
    QPointer<SoundSettingsPanel> alive(this);
    // Hidden while the window renders and starts the test, so it cannot be clicked twice.
    m_ui->tester->hide();
    emit testRequested();
    if (alive)
        m_ui->tester->show();
}

void SoundSettingsPanel::fitSummaryBox(const QSizeF &documentSize)
{
    // The summary grows with its wrapped text instead of hiding lines behind a scroll bar.
    QTextEdit *summary = m_ui->infohandicape;
    summary->setFixedHeight(qCeil(documentSize.height()) + 2 * summary->frameWidth());
}

bool SoundSettingsPanel::CALCCONFIG()
{
    const TimingResult result = kelvora::CALCCONFIG(settings().timingInputs(), m_lookup);
    if (m_ui->MOT->currentText() != result.trimmedWord)
        m_ui->MOT->setEditText(result.trimmedWord);

    const TimingGrid &g = result.grid;
    Ui::SoundSettingsPanel &ui = *m_ui;
    writeGrid(ui.NP, g.NP);
    writeGrid(ui.NT, g.NT);
    writeGrid(ui.ES, g.ES);
    writeGrid(ui.EL, g.EL);
    writeGrid(ui.EM, g.EM);
    writeGrid(ui.VP, g.VP);
    writeGrid(ui.VT, g.VT);
    writeGrid(ui.VS, g.VS);
    writeGrid(ui.VL, g.VL);
    writeGrid(ui.VM, g.VM);
    writeGrid(ui.TT, g.TT);

    if (!result.ok) {
        m_prompts.message(this, result.error);
        return false;
    }
    ui.infocalcul->setText(result.information);
    ui.infocalcul->setCursorPosition(0);
    m_plan = result.plan;
    return true;
}

void SoundSettingsPanel::writeGrid(QLineEdit *box, double value)
{
    // A field the calculation did not reach keeps what the box showed.
    if (!std::isnan(value))
        box->setText(numbers::format(value));
}

TimingPlan SoundSettingsPanel::timingPlan() const
{
    return m_plan;
}

SoundSettings SoundSettingsPanel::settings() const
{
    SoundSettings s = SoundSettings::defaults();
    const Ui::SoundSettingsPanel &ui = *m_ui;
    s.vitesse = ui.VITESSE->currentText();
    s.mot = ui.MOT->currentText();
    s.frequence = ui.FRE->currentText();
    s.volume = ui.VOL->currentText();
    s.ct = ui.CT->text();
    s.cs = ui.CS->text();
    s.cl = ui.CL->text();
    s.cm = ui.CM->text();
    s.sup = ui.SUP->currentText();
    s.deb = ui.DEB->text();
    s.fin = ui.FIN->text();
    return s;
}

QComboBox *SoundSettingsPanel::combo(const QString &box) const
{
    return box.isEmpty() ? nullptr : findChild<QComboBox *>(box);
}

QLineEdit *SoundSettingsPanel::lineEdit(const QString &box) const
{
    // An editable combo's inner line edit has no name, so an empty name matches nothing.
    return box.isEmpty() ? nullptr : findChild<QLineEdit *>(box);
}

QString SoundSettingsPanel::boxText(const QString &box) const
{
    if (const QComboBox *c = combo(box))
        return c->currentText();
    if (const QLineEdit *e = lineEdit(box))
        return e->text();
    return {};
}

bool SoundSettingsPanel::setBoxText(const QString &box, const QString &text)
{
    if (QComboBox *c = combo(box)) {
        if (c->isEditable()) {
            c->setEditText(text);
            return true;
        }
        const int index = c->findText(text);
        if (index < 0)
            return false;
        c->setCurrentIndex(index);
        return true;
    }
    QLineEdit *e = lineEdit(box);
    if (!e || e->isReadOnly())
        return false;
    e->setText(text);
    return true;
}

void SoundSettingsPanel::addSentPatternPositions(int n)
{
    QLineEdit *es = m_ui->ES;
    es->setText(numbers::format(numbers::leadingNumber(es->text()) + n));
}

void SoundSettingsPanel::applyPreset(const QList<soundPresets::PresetValue> &values)
{
    const QString characterSetBox = QString::fromLatin1(soundPresets::characterSetBox);
    for (const soundPresets::PresetValue &value : values) {
        if (value.box == characterSetBox)
            emit characterSetRequested(value.text);
        else
            setBoxText(value.box, value.text);
    }
}

void SoundSettingsPanel::applyExaminationPreset()
{
    applyPreset(soundPresets::examination());
}

void SoundSettingsPanel::applyHandicappedPreset()
{
    applyPreset(soundPresets::handicapped());
}

QSize SoundSettingsPanel::sizeHint() const
{
    // Asks for the whole page; the scroll area only helps on small screens and large
    // scale factors, where the page would not fit.
    const QSize page = m_ui->contenu->sizeHint();
    const QSize scroller = m_ui->defilement->sizeHint();
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return QWidget::sizeHint()
           + QSize(qMax(0, page.width() + scrollBar - scroller.width()),
                   qMax(0, page.height() - scroller.height()));
}

QPushButton *SoundSettingsPanel::validateButton() const
{
    return m_ui->command2;
}

} // namespace kelvora
