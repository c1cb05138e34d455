#include "ui/TextFileArea.h"

#include "settings/AppPaths.h"
#include "settings/SettingKeys.h"
#include "texttools/Accents.h"
#include "texttools/TextFile.h"
#include "texttools/Transforms.h"
#include "ui/SettingsWriter.h"
#include "ui/UserPrompts.h"
#include "ui/ViewSwitcher.h"

#include <QAction>
#include <QDir>
#include <QLocale>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QPlainTextEdit>

namespace kelvora {

TextFileArea::TextFileArea(const Controls &controls, const AppPaths &paths, ViewSwitcher &views,
                           SettingsWriter &writer, UserPrompts &prompts, std::function<void()> prepare,
                           QWidget *window, QObject *parent)
    : QObject(parent)
    , m_c(controls)
    , m_paths(paths)
    , m_views(views)
    , m_writer(writer)
    , m_prompts(prompts)
    , m_prepare(std::move(prepare))
    , m_window(window)
{
    connect(m_c.open, &QAction::triggered, &m_views, &ViewSwitcher::showFiles);
    // A click, or Enter on the file picked with the arrows (not "activation", which some
    // desktops also send on a click or a double click: a file appended twice).
    connect(m_c.files, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { load(item->text()); });
    m_c.files->installEventFilter(this);
    const std::pair<QAction *, QString (*)(const QString &)> tools[] = {
        {m_c.groups, textTools::fiveCharacterGroups},
        {m_c.accents, textTools::acc},
        {m_c.reverse, textTools::reversed},
        {m_c.spaces, textTools::spacedOut},
    };
    for (const auto &[action, tool] : tools)
        connect(action, &QAction::triggered, this, [this, tool] { transform(tool); });
}

bool TextFileArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_c.files && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && m_c.files->currentItem()) {
            load(m_c.files->currentItem()->text());
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void TextFileArea::load(const QString &name)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const textFile::Read file = textFile::read(QDir(m_paths.textFolder()).filePath(name));
    if (!file.ok) {
        QGuiApplication::restoreOverrideCursor();
        // Gone since the list was made: say so, and show the folder as it is now.
        m_prompts.message(m_window, file.error);
        m_views.fillFileList();
        return;
    }
    const QString whole = textFile::loaded(m_c.exercise->toPlainText(), m_c.append->isChecked(), file.text);
    const QString text = textFile::cutAtBlank(whole, textFile::boxLimit);
    m_c.exercise->setPlainText(text);
    m_writer.save(userKeys::fichier1, name);
    m_views.setLastFile(name);
    m_views.showExercise();
    m_prepare();
    QGuiApplication::restoreOverrideCursor();
    if (text.size() < whole.size()) {
        const QLocale french(QLocale::French);
        emit notice(QStringLiteral("« %1 » est trop long pour la fenêtre : seul son début est chargé "
                                   "(%2 caractères sur %3).")
                        .arg(name, french.toString(text.size()), french.toString(whole.size())));
    }
}

void TextFileArea::transform(const std::function<QString(const QString &)> &tool)
{
    m_c.exercise->setPlainText(tool(m_c.exercise->toPlainText()));
}

} // namespace kelvora
