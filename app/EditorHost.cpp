#include "CliSupport.h"
#include "Commands.h"
#include "FileAccess.h"

#include "editor/CreateProductEditor.h"

#include <QApplication>
#include <QMessageBox>
#include <QDir>
#include <QFileInfo>
#include <QMainWindow>
#include <QPixmap>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeView>

#include <cstdlib>
#include <memory>

using namespace ProductEditor;

namespace {

struct EditorOptions
{
    QString folder;
    QString licenses;
    QString screenshot;
    int tab = -1;
};

QString BundledExample(const char *argv0)
{
    const QString fromSource = QDir(QStringLiteral(PE_SOURCE_DIR)).filePath(QStringLiteral("examples/definitions"));
    if (QFileInfo(fromSource).isDir())
        return fromSource;
    // An installed or moved build: look beside and above the executable.
    const QFileInfo self(QStringLiteral("/proc/self/exe"));
    const QDir exe = self.exists() ? QFileInfo(self.canonicalFilePath()).dir()
                                   : QFileInfo(QString::fromLocal8Bit(argv0)).absoluteDir();
    for (const QString &relative : {QStringLiteral("examples/definitions"),
                                    QStringLiteral("../examples/definitions"),
                                    QStringLiteral("../../examples/definitions"),
                                    QStringLiteral("../share/product-editor/examples/definitions")}) {
        const QString candidate = QDir::cleanPath(exe.filePath(relative));
        if (QFileInfo(candidate).isDir())
            return candidate;
    }
    return fromSource;
}

bool Fail(const QString &message, bool withUsage)
{
    Err() << "product-editor: " << message << "\n";
    if (withUsage)
        Err() << "\n" << UsageText();
    Err().flush();
    return false;
}

// Parsed before QApplication exists, so that --screenshot can pick the
// offscreen platform when there is no display.
bool ParseEditorArguments(const QStringList &args, EditorOptions *options)
{
    for (int i = 0; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        const auto value = [&](QString *target) {
            if (i + 1 >= args.size())
                return Fail(QStringLiteral("option '%1' needs a value").arg(arg), true);
            *target = args.at(++i);
            return true;
        };
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            Out() << UsageText();
            Out().flush();
            std::exit(ExitOk);
        } else if (arg == QLatin1String("--licenses")) {
            if (!value(&options->licenses))
                return false;
        } else if (arg == QLatin1String("--screenshot")) {
            if (!value(&options->screenshot))
                return false;
        } else if (arg == QLatin1String("--tab")) {
            QString text;
            if (!value(&text))
                return false;
            bool ok = false;
            options->tab = text.toInt(&ok);
            if (!ok || options->tab < 0 || options->tab > 5)
                return Fail(QStringLiteral("--tab: '%1' is not a page number from 0 to 5").arg(text), true);
        } else if (arg.startsWith(QLatin1Char('-')) && arg.size() > 1) {
            return Fail(QStringLiteral("unknown option '%1'").arg(arg), true);
        } else if (options->folder.isEmpty()) {
            options->folder = arg;
        } else {
            return Fail(QStringLiteral("unexpected argument '%1'").arg(arg), true);
        }
    }
    if (options->tab >= 0 && options->screenshot.isEmpty())
        return Fail(QStringLiteral("--tab is only meaningful with --screenshot"), true);
    return true;
}

// The license catalogue the command-line mode uses: every license the
// definitions name, unless a catalogue file is given.
bool LicenseCatalogue(const EditorOptions &options, FileAccess &access, QMap<QString, QString> *catalogue)
{
    if (!options.licenses.isEmpty()) {
        QString error;
        if (!ReadLicenseCatalogue(options.licenses, catalogue, &error))
            return Fail(error, false);
        return true;
    }
    VantixJsonData probe(options.folder, access.reader(), access.writer(), {});
    if (probe.GetProductsOriginalJson().isEmpty())
        return Fail(QStringLiteral("%1: the definition folder could not be loaded").arg(options.folder), false);
    *catalogue = DefaultLicenseCatalogue(probe);
    return true;
}

// Pages that are empty until the user acts are shown as they look after the
// first action: Changes after "Update", Query after "Apply" with empty fields
// (every feature), Result with its top levels opened.
void PreparePage(QMainWindow *window, int tab)
{
    if (tab == 3) {
        if (auto *update = window->findChild<QPushButton *>(QStringLiteral("mp_btn_update")))
            update->click();
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
    const QPixmap image = window->grab();
    if (!image.save(options.screenshot, "PNG")) {
        Fail(QStringLiteral("%1: cannot write the screenshot").arg(options.screenshot), false);
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

} // namespace

int RunEditor(int &argc, char **argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    EditorOptions options;
    if (!ParseEditorArguments(args, &options))
        return ExitError;

    // The folder and the catalogue are checked before any display is needed.
    if (options.folder.isEmpty())
        options.folder = BundledExample(argv[0]);
    options.folder = QDir::cleanPath(QFileInfo(options.folder).absoluteFilePath());
    const QString problem = DiagnoseFolder(options.folder);
    if (!problem.isEmpty()) {
        Fail(problem, false);
        return ExitError;
    }
    for (const QString &warning : SkippedLayoutFiles(options.folder))
        Err() << "product-editor: warning: " << warning << "\n";
    Err().flush();

    FileAccess access;
    QMap<QString, QString> catalogue;
    if (!LicenseCatalogue(options, access, &catalogue))
        return ExitError;

    const bool noDisplay = qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
                           && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (noDisplay && options.screenshot.isEmpty()) {
        Fail(QStringLiteral("no display to open the window on; use --screenshot FILE to render it instead"), false);
        return ExitError;
    }
#endif
    if (!options.screenshot.isEmpty()) {
        if (noDisplay)
            qputenv("QT_QPA_PLATFORM", "offscreen");
        previousHandler = qInstallMessageHandler(QuietOffscreenMessages);
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("product-editor"));

    // The store does not look at the writer's result, so a failed write is told here.
    const Writer fileWriter = access.writer();
    const Writer writer = [&fileWriter, &access](const QString &path, const QByteArray &bytes) {
        if (fileWriter(path, bytes))
            return true;
        QMessageBox::warning(QApplication::activeWindow(), QStringLiteral("Save"),
                             QStringLiteral("Could not write %1").arg(access.errors().last()));
        return false;
    };
    std::unique_ptr<QMainWindow> window(
        CreateProductEditor(options.folder, access.reader(), writer, catalogue, nullptr));
    window->setWindowTitle(QStringLiteral("Product editor - %1").arg(QDir::toNativeSeparators(options.folder)));

    if (!options.screenshot.isEmpty())
        return RenderScreenshot(window.get(), options);

    window->show();
    return app.exec();
}
