#include "store/DefaultLicenseCatalogue.h"

#include "store/VantixJsonData.h"

namespace ProductEditor {

QMap<QString, QString> DefaultLicenseCatalogue(VantixJsonData &store)
{
    QMap<QString, QString> catalogue;
    const auto add = [&catalogue](const QSet<QString> &names) {
        for (const QString &name : names)
            catalogue.insert(name, name);
    };
    for (const ProductData &product : store.GetProducts().products) {
        catalogue.insert(product.base, product.base);
        for (const QSet<QString> &names : product.specificLicenses)
            add(names);
    }
    for (const ExtensionInfo &info : store.GetExtensions()) {
        add(info.importLicenses);
        add(info.exportLicenses);
    }
    return catalogue;
}

} // namespace ProductEditor
