#include "SyntheticFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <cstdio>

namespace {

int Usage()
{
    std::fprintf(stderr,
                 "usage: pe-generate FEATURES DIR [SEED]\n"
                 "Writes a synthetic definition folder with FEATURES features into DIR\n"
                 "(products/products.json and layouts/*.json). The same FEATURES and SEED\n"
                 "always give the same bytes.\n");
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.size() < 2 || args.size() > 3)
        return Usage();

    bool ok = false;
    const int features = args.at(0).toInt(&ok);
    if (!ok || features < 1)
        return Usage();
    quint32 seed = 1;
    if (args.size() == 3) {
        seed = args.at(2).toUInt(&ok);
        if (!ok)
            return Usage();
    }

    const QString dir = QDir(args.at(1)).absolutePath();
    const SyntheticFolder folder = GenerateSyntheticFolder(features, seed);
    if (!WriteSyntheticFolder(folder, dir)) {
        std::fprintf(stderr, "pe-generate: cannot write into %s\n", qPrintable(dir));
        return 1;
    }

    const SyntheticSizes sizes = SyntheticSizesFor(features);
    qint64 bytes = folder.productsJson.size();
    for (const QByteArray &layout : folder.layoutFiles)
        bytes += layout.size();
    std::printf("%s: %d features, %d products, %d layouts in %d files, %d extensions, %d licenses, %lld bytes\n",
                qPrintable(dir), sizes.features, sizes.products, sizes.layouts, sizes.layoutFiles,
                sizes.extensions, sizes.licenses, static_cast<long long>(bytes));
    return 0;
}
