#include "host/HostFeedback.h"

#include "host/FolderOpener.h"
#include "output/Console.h"
#include "output/LoadMessages.h"
#include "output/ProgramMessage.h"
#include "store/DefinitionFolder.h"

#include "check/SaveLosses.h"
#include "models/ProblemsModel.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QEvent>
#include <QFileInfo>
#include <QMainWindow>
#include <QMessageBox>
#include <QSettings>
#include <QSortFilterProxyModel>
#include <QStatusBar>

using namespace ProductEditor;

namespace {

QString Native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

template<typename Handler>
void HostFeedback::_Follow(const char *action, Handler handler)
{
    if (auto *found = m_window->findChild<QAction *>(QLatin1String(action)))
        connect(found, &QAction::triggered, this, handler);
}

Reader HostFeedback::reader()
{
    return [this](const QString &path) {
        if (m_firstRead.isEmpty()) {
            m_firstRead = path;
            // Load and Reload see the folder as its last save left it, finished or undone.
            FolderOpener opener(FileAccess::ReadFile, QString());
            const bool recovered = opener.Recover(DefinitionFolder::Containing(path));
            ProgramMessage::Print(opener.Messages());
            m_recoveryRefusal = recovered ? QString() : opener.Messages().last();
            if (!recovered)
                return QByteArray();
        }
        return FileAccess::ReadFile(path);
    };
}

Writer HostFeedback::writer()
{
    return [this, write = m_access.writer()](const QString &path, const QByteArray &bytes) {
        if (m_saved.isEmpty())
            m_access.BeginSave(DefinitionFolder::Containing(path));
        m_saved << path;
        if (QFileInfo(path).isFile() && FileAccess::ReadFile(path) == bytes) {
            ++m_unchanged;
            return true;
        }
        if (write(path, bytes))
            return true;
        ++m_failed;
        QMessageBox::warning(QApplication::activeWindow(), QStringLiteral("Save"),
                             QStringLiteral("Could not write %1").arg(m_access.errors().last()));
        return false;
    };
}

void HostFeedback::Attach(QMainWindow *window, VantixJsonData *store)
{
    m_window = window;
    m_store = store;
    setParent(window);
    m_firstRead.clear();
    _UpdateTitle();
    _RestoreDocks();
    window->installEventFilter(this);
    for (const char *name : {"mp_run_save", "mp_run_save_as"})
        _Follow(name, [this] { _ReportSave(); });
    for (const char *name : {"mp_run_load", "mp_run_reload"})
        _Follow(name, [this] { _ReportLoad(); });
}

bool HostFeedback::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_window || event->type() != QEvent::Close)
        return QObject::eventFilter(watched, event);
    QSettings().setValue(kDocksKey, m_window->saveState());
    if (!m_window->isWindowModified())
        return false;
    if (_MayClose())
        return false;
    event->ignore();
    return true;
}

void HostFeedback::_RestoreDocks()
{
    if (auto *problems = m_window->findChild<QDockWidget *>(QStringLiteral("mp_dock_problems")))
        problems->show();
    m_window->restoreState(QSettings().value(kDocksKey).toByteArray());
}

void HostFeedback::_UpdateTitle()
{
    m_window->setWindowTitle(QStringLiteral("Product editor - %1[*]").arg(Native(m_window->windowFilePath())));
}

// The Problems panel still shows the files as they were before the save: its check
// of the written files has not run yet.
QString HostFeedback::_SaveLosses() const
{
    const auto *table = m_window->findChild<QAbstractItemView *>(QStringLiteral("mp_tbl_problems"));
    const auto *sorted = table ? qobject_cast<const QSortFilterProxyModel *>(table->model()) : nullptr;
    const auto *problems = sorted ? qobject_cast<const ProblemsModel *>(sorted->sourceModel()) : nullptr;
    return problems ? SaveLosses(problems->GetDiagnostics()) : QString();
}

void HostFeedback::_ReportSave()
{
    if (m_saved.isEmpty())
        return; // the folder dialog was cancelled
    const QString folder = Native(DefinitionFolder::Containing(m_saved.first()));
    if (!m_access.FinishSave() && m_failed == 0) {
        // Every file was written aside, but they could not all be put in place.
        m_failed = m_saved.size() - m_unchanged;
        QMessageBox::warning(m_window, QStringLiteral("Save"),
                             QStringLiteral("Could not write %1").arg(m_access.errors().last()));
    }
    if (m_failed > 0) {
        m_window->statusBar()->showMessage(
            QStringLiteral("Could not save %1 of %2 files to %3").arg(m_failed).arg(m_saved.size()).arg(folder));
        // The store does not know; the changes are still not on disk.
        m_window->setWindowModified(true);
    } else if (const QString losses = _SaveLosses(); !losses.isEmpty()) {
        m_window->statusBar()->showMessage(
            QStringLiteral("Saved %1 files; %2, see Problems").arg(m_saved.size()).arg(losses));
    } else {
        m_window->statusBar()->showMessage(QStringLiteral("Saved %1 files to %2 (%3 unchanged)")
                                               .arg(m_saved.size())
                                               .arg(folder)
                                               .arg(m_unchanged));
    }
    m_saved.clear();
    m_unchanged = 0;
    m_failed = 0;
}

void HostFeedback::_ReportLoad()
{
    if (m_firstRead.isEmpty())
        return; // nothing was loaded: a dialog was cancelled
    const QString folder = Native(DefinitionFolder::Containing(m_firstRead));
    m_firstRead.clear();
    const std::optional<LoadProblem> &refusal = m_store->GetLoadReport().refusal;
    if (!refusal) {
        _UpdateTitle();
        m_window->statusBar()->showMessage(QStringLiteral("Loaded %1").arg(folder));
        return;
    }
    const QString reason = ProgramMessage::WithoutProgram(m_recoveryRefusal.isEmpty() ? RefusalMessage(*refusal)
                                                                                        : m_recoveryRefusal);
    m_window->statusBar()->showMessage(QStringLiteral("Could not load %1: %2").arg(folder, reason));
}

bool HostFeedback::_MayClose()
{
    QMessageBox box(QMessageBox::Question, QStringLiteral("Product editor"),
                    QStringLiteral("The definitions in %1 have unsaved changes.")
                        .arg(Native(m_window->windowFilePath())),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, m_window);
    box.setInformativeText(QStringLiteral("Save them before closing?"));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        if (auto *save = m_window->findChild<QAction *>(QStringLiteral("mp_run_save")))
            save->trigger();
        return !m_window->isWindowModified();
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}
