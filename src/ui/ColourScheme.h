#pragma once

#include <QColor>
#include <QList>
#include <QObject>

class QWidget;

namespace kelvora {

class SettingsWriter;
class UserPrompts;

// The three colours of a profile, stored as 0xBBGGRR: the exercise frame (F2ch paints
// the frame, its labels and check boxes, and the window around it), the background and
// the text of the text views. A double click on the frame, on the exercise text or on
// the answer line opens the colour dialog; the chosen colour is saved at once.
class ColourScheme : public QObject {
    Q_OBJECT
public:
    struct Targets {
        QWidget *window = nullptr;     // the area around the frames
        QWidget *frame = nullptr;      // Frame2
        QWidget *exercise = nullptr;   // EXO: double click chooses the text background
        QWidget *answer = nullptr;     // Text1: double click chooses the text colour
        QList<QWidget *> textViews;    // EXO, Text1, List1, File1
        // Inside the painted area but not painted: controls with a look of their own
        // (the navigation bar, the player) and the settings page.
        QList<QWidget *> unpainted;
    };

    ColourScheme(const Targets &targets, SettingsWriter &writer, UserPrompts &prompts,
                 QObject *parent = nullptr);

    static QColor fromStored(quint32 bgr);
    static quint32 toStored(const QColor &colour);

    // F2ch: the frame colour ("color1").
    void F2ch(quint32 bgr);
    void setTextBackground(quint32 bgr); // "color2"
    void setTextColour(quint32 bgr);     // "color3"


    // The colour dialog for each of the three choices; nothing changes when cancelled.
    void chooseFrameColour();
    void chooseTextBackground();
    void chooseTextColour();
    // Timer6's tick: a random frame colour, not saved.
    void randomFrameColour();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void paintTextViews();

    Targets m_targets;
    SettingsWriter &m_writer;
    UserPrompts &m_prompts;
    quint32 m_frameColour = 0;
    quint32 m_textBackground = 0xFFFFFF;
    quint32 m_textColour = 0;
};

} // namespace kelvora
