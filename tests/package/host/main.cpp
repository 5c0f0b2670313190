// A host application built against the installed library: it opens the editor over a
// definition folder and checks that the window came up with the features loaded.
#include "editor/CreateProductEditor.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QMainWindow>

#include <memory>

#ifdef PRODUCT_EDITOR_BUILD
#error "a host must import the library's symbols, not export them"
#endif

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
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
