#include "EditorHost.h"

#include "CommandLine.h"
#include "EditorOptions.h"
#include "FileAccess.h"
#include "FolderOpener.h"
#include "LoadMessages.h"

#include "editor/CreateProductEditor.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QMainWindow>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTabWidget>
#include <QThreadPool>
#include <QTreeView>

using namespace ProductEditor;

namespace {

void Fail(const QString &message)
{
    Err() << "product-editor: " << message << "\n";
}

// Pages that are empty until the user acts are shown as they look after the
// first action: Changes after "Update" with the first difference selected, Query
// after "Apply" with empty fields (every feature), Result with its top levels opened.
void PreparePage(QMainWindow *window, int tab)
{
    if (tab == 3) {
        for (const char *button : {"mp_btn_update", "mp_btn_next_difference"}) {
            if (auto *push = window->findChild<QPushButton *>(QLatin1String(button)))
                push->click();
        }
    } else if (tab == 4) {
        if (auto *apply = window->findChild<QPushButton *>(QStringLiteral("mp_btn_apply_query")))
            apply->click();
    } else if (tab == 5) {
        if (auto *tree = window->findChild<QTreeView *>(QStringLiteral("mp_tree_result"))) {
            tree->expandToDepth(2);
            tree->resizeColumnToContents(0);
        }
    }
}

int RenderScreenshot(QMainWindow *window, const EditorOptions &options)
{
    if (options.tab >= 0) {
        if (auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("mp_widget_tab")))
            tabs->setCurrentIndex(options.tab);
        PreparePage(window, options.tab);
    }
    // Larger than the form's own size so that every column of the wide tables reads in full.
    window->resize(1600, 960);
    window->show();
    QApplication::processEvents();
    // The findings panel checks on a pool thread; the picture shows its result.
    for (int round = 0; round < 2; ++round) {
        QThreadPool::globalInstance()->waitForDone();
        QApplication::processEvents();
    }
    const QPixmap image = window->grab();
    if (!image.save(options.screenshot, "PNG")) {
        Fail(QStringLiteral("%1: cannot write the screenshot").arg(options.screenshot));
        return ExitError;
    }
    Out() << "product-editor: wrote " << QDir::toNativeSeparators(options.screenshot) << "\n";
    Out().flush();
    return ExitOk;
}

// Rendering off screen makes the platform plugin and the standard paths warn
// about things that do not matter for a picture.
QtMessageHandler previousHandler = nullptr;

void QuietOffscreenMessages(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg
        && (message.startsWith(QLatin1String("This plugin does not support"))
            || message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))))
        return;
    if (previousHandler)
        previousHandler(type, context, message);
}


QString Native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

// The definition folder of a file the store reads or writes: FOLDER/products/products.json,
// FOLDER/layouts/x.json, or FOLDER/products.json for a folder without sub-folders.
QString FolderOf(const QString &file)
{
    const QDir dir = QFileInfo(file).absoluteDir();
    const QString name = dir.dirName();
    if (name == QLatin1String("products") || name == QLatin1String("layouts"))
        return QFileInfo(dir.absolutePath()).absolutePath();
    return dir.absolutePath();
}

// What the program adds to the library's window: the title follows the folder, unsaved
// changes are not dropped without asking, and the status bar tells what Save and Load did.
// The library keeps its own silent behaviour; everything here watches its actions, which
// run their handlers before the ones connected here.
class HostFeedback : public QObject
{
public:
    // A file whose content would not change is left as it is and counted.
    Reader reader()
    {
        return [this](const QString &path) {
            if (m_firstRead.isEmpty()) {
                m_firstRead = path;
                // Load and Reload see the folder as its last save left it, finished or undone.
                FolderOpener opener(FileAccess::ReadFile, QString());
                const bool recovered = opener.Recover(FolderOf(path));
                for (const QString &message : opener.Messages())
                    Err() << message << "\n";
                m_recoveryRefusal = recovered ? QString() : opener.Messages().last();
                if (!recovered)
                    return QByteArray();
            }
            return FileAccess::ReadFile(path);
        };
    }
    Writer writer()
    {
        return [this, write = m_access.writer()](const QString &path, const QByteArray &bytes) {
            if (m_saved.isEmpty())
                m_access.BeginSave(FolderOf(path));
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

    void Attach(QMainWindow *window, VantixJsonData *store)
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

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
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

private:
    template<typename Handler>
    void _Follow(const char *action, Handler handler)
    {
        if (auto *found = m_window->findChild<QAction *>(QLatin1String(action)))
            connect(found, &QAction::triggered, this, handler);
    }

    // The Problems panel shows unless the docks were last left otherwise.
    void _RestoreDocks()
    {
        if (auto *problems = m_window->findChild<QDockWidget *>(QStringLiteral("mp_dock_problems")))
            problems->show();
        m_window->restoreState(QSettings().value(kDocksKey).toByteArray());
    }

    void _UpdateTitle()
    {
        m_window->setWindowTitle(QStringLiteral("Product editor - %1[*]").arg(Native(m_window->windowFilePath())));
    }

    void _ReportSave()
    {
        if (m_saved.isEmpty())
            return; // the folder dialog was cancelled
        const QString folder = Native(FolderOf(m_saved.first()));
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

    void _ReportLoad()
    {
        if (m_firstRead.isEmpty())
            return; // nothing was loaded: a dialog was cancelled
        const QString folder = Native(FolderOf(m_firstRead));
        m_firstRead.clear();
        const std::optional<LoadProblem> &refusal = m_store->GetLoadReport().refusal;
        if (!refusal) {
            _UpdateTitle();
            m_window->statusBar()->showMessage(QStringLiteral("Loaded %1").arg(folder));
            return;
        }
        QString reason = m_recoveryRefusal.isEmpty() ? RefusalMessage(*refusal) : m_recoveryRefusal;
        const QString lead = QStringLiteral("product-editor: ");
        if (reason.startsWith(lead))
            reason.remove(0, lead.size());
        m_window->statusBar()->showMessage(QStringLiteral("Could not load %1: %2").arg(folder, reason));
    }

    // Save, Discard or Cancel; true when the window may close.
    bool _MayClose()
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

    static constexpr const char *kDocksKey = "window/docks";

    FileAccess m_access;
    QMainWindow *m_window = nullptr; // the parent
    VantixJsonData *m_store = nullptr; // lives in the window
    QString m_firstRead;    // the first file read since the last report
    QString m_recoveryRefusal; // why that load found an interrupted save it could not finish
    QStringList m_saved;    // the files of the current save
    int m_unchanged = 0;
    int m_failed = 0;
};

std::unique_ptr<QMainWindow> OpenWindow(const QString &folder, const QString &catalogueFile, const Reader &reader,
                                        const Writer &writer, QStringList *messages, VantixJsonData **store)
{
    FolderOpener opener(reader, catalogueFile);
    if (!opener.Recover(folder)) {
        *messages = opener.Messages();
        return nullptr;
    }
    std::unique_ptr<QMainWindow> window(CreateProductEditorWithCatalogue(
        folder, reader, writer, [&opener, store](VantixJsonData &loaded) {
            if (store)
                *store = &loaded;
            return opener.Catalogue(loaded);
        }));
    *messages = opener.Messages();
    if (!opener.Opened())
        return nullptr;
    window->setWindowTitle(QStringLiteral("Product editor - %1").arg(QDir::toNativeSeparators(folder)));
    return window;
}

} // namespace

QString BundledExample(const QString &programDir)
{
    const QDir dir(programDir);
    const QStringList candidates{dir.filePath(QStringLiteral("../share/product-editor/examples/definitions")),
                                 dir.filePath(QStringLiteral("../../examples/definitions"))};
    for (const QString &candidate : candidates) {
        if (QFileInfo(candidate).isDir())
            return QDir::cleanPath(candidate);
    }
    return QDir::cleanPath(candidates.first());
}

std::unique_ptr<QMainWindow> OpenEditorWindow(const QString &folder, const QString &catalogueFile,
                                              const Reader &reader, const Writer &writer, QStringList *messages)
{
    return OpenWindow(folder, catalogueFile, reader, writer, messages, nullptr);
}

std::unique_ptr<QMainWindow> OpenHostWindow(const QString &folder, const QString &catalogueFile,
                                            QStringList *messages)
{
    auto feedback = std::make_unique<HostFeedback>();
    VantixJsonData *store = nullptr;
    std::unique_ptr<QMainWindow> window =
        OpenWindow(folder, catalogueFile, feedback->reader(), feedback->writer(), messages, &store);
    if (window && store)
        feedback.release()->Attach(window.get(), store);
    return window;
}

int RunEditor(const QStringList &args, int &argc, char **argv)
{
    EditorOptions options;
    if (const auto status = ParseEditorArguments(args, &options))
        return *status;

    // Without a display the window is still built off screen, so that a refused folder
    // is told before the missing display is.
    bool noDisplay = false;
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    noDisplay = qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
                && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#endif
    if (noDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (noDisplay || !options.screenshot.isEmpty())
        previousHandler = qInstallMessageHandler(QuietOffscreenMessages);

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("product-editor"));
    const QString folder = QDir::cleanPath(QFileInfo(options.folder.isEmpty()
                                                         ? BundledExample(QCoreApplication::applicationDirPath())
                                                         : options.folder)
                                               .absoluteFilePath());

    QStringList messages;
    const std::unique_ptr<QMainWindow> window = OpenHostWindow(folder, options.licenses, &messages);
    for (const QString &message : messages)
        Err() << message << "\n";
    if (!window)
        return ExitError;
    if (!options.screenshot.isEmpty())
        return RenderScreenshot(window.get(), options);
    if (noDisplay) {
        Fail(QStringLiteral("no display to open the window on; use --screenshot FILE to render it instead"));
        return ExitError;
    }
    window->show();
    return app.exec();
}
