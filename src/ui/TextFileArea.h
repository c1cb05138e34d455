#pragma once

#include <QObject>

#include <functional>

class QAction;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;
class QWidget;

namespace kelvora {

struct AppPaths;
class SettingsWriter;
class UserPrompts;
class ViewSwitcher;

// The text files of the "textes" folder and the four tools of "Outils": a click in the
// file list loads the file into the exercise text (after it with "Ajoute"), remembers it
// as fichier1 and prepares its sound; each tool rewrites the exercise text once and
// plays nothing.
class TextFileArea : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QListWidget *files = nullptr;      // File1
        QPlainTextEdit *exercise = nullptr; // EXO
        QAction *append = nullptr;          // ajout
        QAction *open = nullptr;            // ouvrir
        QAction *groups = nullptr, *accents = nullptr, *reverse = nullptr, *spaces = nullptr;
    };

    TextFileArea(const Controls &controls, const AppPaths &paths, ViewSwitcher &views,
                 SettingsWriter &writer, UserPrompts &prompts, std::function<void()> prepare,
                 QWidget *window, QObject *parent = nullptr);

    void load(const QString &name);
    void transform(const std::function<QString(const QString &)> &tool);

signals:
    // A file longer than the box takes was loaded in part.
    void notice(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Controls m_c;
    const AppPaths &m_paths;
    ViewSwitcher &m_views;
    SettingsWriter &m_writer;
    UserPrompts &m_prompts;
    std::function<void()> m_prepare;
    QWidget *m_window;
};

} // namespace kelvora
