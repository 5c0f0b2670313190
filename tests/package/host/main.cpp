// A host application built against the installed library: it opens the editor over a
// definition folder and checks that the window came up with the features loaded.
#include "editor/CreateProductEditor.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QMainWindow>
#include <QVersionNumber>

#include <memory>

#ifdef PRODUCT_EDITOR_BUILD
#error "a host must import the library's symbols, not export them"
#endif
#if QT_VERSION_MAJOR != PE_HOST_QT_MAJOR
#error "the host is compiled against another Qt than the package was built with"
#endif

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    // The library and the host must share one Qt at run time too.
    if (QLibraryInfo::version().majorVersion() != PE_HOST_QT_MAJOR)
        return 2;
    const auto read = [](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const std::unique_ptr<QMainWindow> window(ProductEditor::CreateProductEditor(
        QString::fromLocal8Bit(argc > 1 ? argv[1] : ""), read, [](const QString &, const QByteArray &) { return false; }, {}));
    window->show();
    const auto *features = window->findChild<QAbstractItemView *>(QStringLiteral("mp_lst_features"));
    return features && features->model() && features->model()->rowCount() > 0 ? 0 : 1;
}
