#pragma once

#include "morse/SoundPresets.h"
#include "morse/SoundSettings.h"
#include "morse/TimingPlan.h"

#include <QWidget>

#include <memory>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace Ui {
class SoundSettingsPanel;
}

namespace kelvora {

class PatternLookup;
class UserPrompts;

// The sound settings frame (Frame1): speed, tone, reference word, dot counts, thinking
// time, start and end signs, group lengths, the read-only "Timing" grid and the two
// presets. The boxes hold the live values; every change rule runs from the boxes' own
// signals, so a program that sets a box's text (a profile restore, a preset) gets the
// same clamps and recalculations as a user typing.
class SoundSettingsPanel : public QWidget {
    Q_OBJECT
public:
    SoundSettingsPanel(PatternLookup &lookup, UserPrompts &prompts, QWidget *parent = nullptr);
    ~SoundSettingsPanel() override;

    // Recalculates the timing from the boxes: writes the trimmed reference word back,
    // the grid, the information line and the plan. On failure the message is shown,
    // the grid keeps what the calculation reached and the previous plan stays.
    bool CALCCONFIG();
    TimingPlan timingPlan() const;
    // The boxes' texts; debfin is not on this panel and keeps its default.
    SoundSettings settings() const;

    // The text of a box of the panel, by object name (VITESSE, FRE, ... GRMAX); empty
    // for an unknown name.
    QString boxText(const QString &box) const;
    // Sets a box's text as a program does (its change rules run). A list-only box
    // (GRMIN, GRMAX) accepts only one of its entries. False when nothing was set.
    bool setBoxText(const QString &box, const QString &text);

    // After a rendering: the "Esp signes" count shows n more, until the next calculation.
    void addSentPatternPositions(int n);

    void applyExaminationPreset();
    void applyHandicappedPreset();

    QPushButton *validateButton() const;

    QSize sizeHint() const override;

signals:
    void validated();
    void memoriseRequested();
    void testRequested();
    void editReferenceRequested();
    void characterSetRequested(const QString &characters);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fillLists();
    void showDefaults();
    void connectRules();
    void onSpeedChanged(const QString &text);
    void onFrequencyChanged(const QString &text);
    void onVolumeChanged(const QString &text);
    void onValidate();
    void onTest();
    void recalculate();
    void fitSummaryBox(const QSizeF &documentSize);
    void applyPreset(const QList<soundPresets::PresetValue> &values);
    void writeGrid(QLineEdit *box, double value);
    QComboBox *combo(const QString &box) const;
    QLineEdit *lineEdit(const QString &box) const;

    PatternLookup &m_lookup;
    UserPrompts &m_prompts;
    std::unique_ptr<Ui::SoundSettingsPanel> m_ui;
    TimingPlan m_plan;
};

} // namespace kelvora
