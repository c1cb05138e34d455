#pragma once

#include <QObject>
#include <QString>

class QAbstractButton;
class QListWidget;
class QStackedWidget;
class QTextBrowser;
class QWidget;

namespace kelvora {

struct AppPaths;

// The four views that share the central area (the exercise text with its answer line,
// the word list, the text files, the help page), the check box "Cache" and the panel
// buttons that switch between them. One view is shown at a time.
class ViewSwitcher : public QObject {
    Q_OBJECT
public:
    struct Views {
        QStackedWidget *stack = nullptr;
        QWidget *exercise = nullptr;    // EXO and Text1
        QWidget *list = nullptr;        // List1
        QListWidget *files = nullptr;   // File1
        QTextBrowser *web = nullptr;    // Web
        QWidget *currentWord = nullptr; // Text14, hidden with the text
        QAbstractButton *hideText = nullptr; // Check1
    };

    ViewSwitcher(const Views &views, const AppPaths &paths, QObject *parent = nullptr);

    void showExercise(); // "Exercice"
    void showHelp();     // "Cache"
    void showFiles();    // "Fichier"
    void showList();     // "Liste"
    void toggleHelp();   // "Aide": ticks or unticks "Cache"
    // The word list, "Cache" left as it is (the word drills show their list this way).
    void showListView();

    // The action of "Cache" for its present value: help in place of the text, or the text.
    void applyHideText();
    void loadHelpPage();
    // The folder's text files, the last one loaded picked.
    void fillFileList();
    void setLastFile(const QString &name) { m_lastFile = name; }

private:
    Views m_views;
    const AppPaths &m_paths;
    QString m_lastFile; // fichier1
};

} // namespace kelvora
