#include "host/EditorHost.h"

#include "commands/CommandLine.h"
#include "host/EditorOptions.h"
#include "host/FileAccess.h"
#include "host/FolderOpener.h"
#include "host/HostFeedback.h"
#include "output/LoadMessages.h"
#include "output/ProgramMessage.h"

#include "editor/CreateProductEditor.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QMainWindow>
#include <QPixmap>
#include <QPushButton>
#include <QTabWidget>
#include <QThreadPool>
#include <QTreeView>

using namespace ProductEditor;

namespace {

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
    // The docks as the program first shows them, whatever a user's settings say.
    for (QDockWidget *dock : window->findChildren<QDockWidget *>())
        dock->setVisible(dock->objectName() == QLatin1String("mp_dock_problems"));
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
    if (!image.save(options.screenshot, "PNG"))
        return ProgramMessage::Fail(QStringLiteral("%1: cannot write the screenshot").arg(options.screenshot));
    Out() << ProgramMessage::Text(QStringLiteral("wrote ") + QDir::toNativeSeparators(options.screenshot)) << "\n";
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
    return QDir::cleanPath(QDir(programDir).filePath(QStringLiteral("../" PE_DATA_DIR "/examples/definitions")));
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
    ProgramMessage::Print(messages);
    if (!window)
        return ExitError;
    if (!options.screenshot.isEmpty())
        return RenderScreenshot(window.get(), options);
    if (noDisplay)
        return ProgramMessage::Fail(
            QStringLiteral("no display to open the window on; use --screenshot FILE to render it instead"));
    window->show();
    return app.exec();
}
