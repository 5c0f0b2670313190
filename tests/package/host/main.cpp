#include "editor/CreateProductEditor.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QMainWindow>
#include <QTabWidget>

#include <cstdio>
#include <memory>

#ifdef PRODUCT_EDITOR_BUILD
#error "a host must import the library's symbols, not export them"
#endif

static int Fail(const char *what)
{
    std::fprintf(stderr, "host: %s\n", what);
    return 1;
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 2)
        return Fail("usage: host DEFINITIONS_FOLDER");

    const auto read = [](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const auto refuse = [](const QString &, const QByteArray &) { return false; };
    const std::unique_ptr<QMainWindow> window(
        ProductEditor::CreateProductEditor(QString::fromLocal8Bit(argv[1]), read, refuse, {}));
    if (!window)
        return Fail("no window");
    window->show();
    QApplication::processEvents();

    if (window->objectName() != QLatin1String("VantixJSONEditorClass") || window->windowTitle().isEmpty())
        return Fail("the window is not the editor's main window");
    const auto *tabs = window->findChild<QTabWidget *>(QStringLiteral("mp_widget_tab"));
    if (!tabs || tabs->count() != 6)
        return Fail("the window has no six-page tab widget");
    const auto *features = window->findChild<QAbstractItemView *>(QStringLiteral("mp_lst_features"));
    if (!features || !features->model() || features->model()->rowCount() == 0)
        return Fail("no features were loaded from the installed example");
    return 0;
}
