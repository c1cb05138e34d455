#include "ui/ViewSwitcher.h"

#include "settings/AppPaths.h"
#include "texttools/TextFile.h"

#include <QAbstractButton>
#include <QDir>
#include <QListWidget>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QUrl>

namespace kelvora {

ViewSwitcher::ViewSwitcher(const Views &views, const AppPaths &paths, QObject *parent)
    : QObject(parent)
    , m_views(views)
    , m_paths(paths)
{
    connect(m_views.hideText, &QAbstractButton::toggled, this, &ViewSwitcher::applyHideText);
}

void ViewSwitcher::applyHideText()
{
    const bool hidden = m_views.hideText->isChecked();
    m_views.currentWord->setVisible(!hidden);
    if (hidden) {
        m_views.stack->setCurrentWidget(m_views.web);
        loadHelpPage();
    } else {
        m_views.stack->setCurrentWidget(m_views.exercise);
    }
}

void ViewSwitcher::showExercise()
{
    m_views.stack->setCurrentWidget(m_views.exercise);
    m_views.hideText->setChecked(false);
}

void ViewSwitcher::showHelp()
{
    m_views.stack->setCurrentWidget(m_views.web);
    m_views.hideText->setChecked(true);
}

// Unticking "Cache" first brings the exercise text back; the chosen view then takes its
// place, so that a single view is ever shown.
void ViewSwitcher::showFiles()
{
    m_views.hideText->setChecked(false);
    fillFileList();
    m_views.stack->setCurrentWidget(m_views.files);
}

void ViewSwitcher::showList()
{
    m_views.hideText->setChecked(false);
    m_views.stack->setCurrentWidget(m_views.list);
}

void ViewSwitcher::showListView()
{
    m_views.stack->setCurrentWidget(m_views.list);
}

void ViewSwitcher::toggleHelp()
{
    m_views.hideText->setChecked(!m_views.hideText->isChecked());
}

void ViewSwitcher::loadHelpPage()
{
    const QString page = m_paths.helpPagePath;
    if (m_views.web->source() == QUrl::fromLocalFile(page))
        m_views.web->reload();
    else
        m_views.web->setSource(QUrl::fromLocalFile(page));
}

void ViewSwitcher::fillFileList()
{
    m_views.files->clear();
    m_views.files->addItems(textFile::list(m_paths.textFolder()));
    const QList<QListWidgetItem *> last = m_views.files->findItems(m_lastFile, Qt::MatchExactly);
    if (!last.isEmpty())
        m_views.files->setCurrentItem(last.first());
}

} // namespace kelvora
