#include "check/RecordsCheck.h"

#include "check/ReferenceCheck.h"

namespace ProductEditor {

namespace {

struct Roles
{
    const char *name;
    QSet<QString> ExtensionAccess::*names;
};

const Roles kRoles[] = {{"import", &ExtensionAccess::import},
                        {"import_as_project", &ExtensionAccess::import_as_project},
                        {"export", &ExtensionAccess::export_},
                        {"export_as_project", &ExtensionAccess::export_as_project},
                        {"export_as_scene", &ExtensionAccess::export_as_scene},
                        {"open", &ExtensionAccess::open}};

// Sets are written sorted, so findings follow that order too.
QStringList Sorted(const QSet<QString> &names)
{
    QStringList sorted(names.cbegin(), names.cend());
    sorted.sort();
    return sorted;
}

class Finder
{
public:
    Finder(const RecordsSnapshot &records, Diagnostics &out)
        : m_records(records)
        , m_out(out)
    {
    }

    void Add(const QString &file, const QString &path, const char *code, const QString &message,
             Diagnostic::Subject subject = Diagnostic::Subject::None, const QString &id = QString())
    {
        Diagnostic diagnostic;
        diagnostic.code = QString::fromLatin1(code);
        diagnostic.file = file;
        diagnostic.line = 0;
        diagnostic.column = 0;
        diagnostic.path = path;
        diagnostic.message = message;
        diagnostic.subject = subject;
        diagnostic.subjectId = id;
        m_out << diagnostic;
    }

    void Access(const ExtensionAccess &access, const QString &file, const QString &path, const QString &owner,
                Diagnostic::Subject subject, const QString &id)
    {
        for (const Roles &role : kRoles) {
            const QString name = QLatin1String(role.name);
            for (const QString &extension : Sorted(access.*role.names)) {
                if (!m_records.extensions.contains(extension))
                    Add(file, path + QLatin1Char('.') + name, "PE007",
                        ReferenceCheck::UndefinedAccessExtension(owner, extension, name), subject, id);
            }
        }
    }

    void License(const QString &license, const QString &file, const QString &path, Diagnostic::Subject subject,
                 const QString &id)
    {
        if (!license.isEmpty() && !m_records.licenses.contains(license))
            Add(file, path, "PE008", ReferenceCheck::MissingLicense(license), subject, id);
    }

private:
    const RecordsSnapshot &m_records;
    Diagnostics &m_out;
};

} // namespace

Diagnostics CheckRecords(const RecordsSnapshot &records, const QString &productsFile,
                         const QMap<QString, QStringList> &layoutFiles)
{
    Diagnostics out;
    Finder find(records, out);
    const auto product = Diagnostic::Subject::Product;
    const auto extension = Diagnostic::Subject::Extension;
    const QVector<ProductData> &products = records.products.products;
    QSet<QString> ids;
    for (int i = 0; i < products.size(); ++i) {
        const ProductData &data = products.at(i);
        const QString path = QStringLiteral("$.products.product[%1]").arg(i);
        if (ids.contains(data.id))
            find.Add(productsFile, path + QStringLiteral(".id"), "PE004", ReferenceCheck::ProductDefinedAgain(data.id),
                     product, data.id);
        ids.insert(data.id);
        for (const QString &mode : Sorted(data.modes)) {
            if (!records.layouts.contains(mode))
                find.Add(productsFile, path + QStringLiteral(".modes"), "PE005",
                         ReferenceCheck::UndefinedLayout(mode, data.id), product, data.id);
        }
        const QString licensing = path + QStringLiteral(".licensing");
        find.License(data.base, productsFile, licensing + QStringLiteral(".base"), product, data.id);
        for (auto it = data.specificLicenses.cbegin(); it != data.specificLicenses.cend(); ++it) {
            const QString specific = licensing + QStringLiteral(".specific");
            if (!records.features.contains(it.key()))
                find.Add(productsFile, specific, "PE006", ReferenceCheck::UndefinedLicensingFeature(data.id, it.key()),
                         product, data.id);
            for (const QString &license : Sorted(it.value()))
                find.License(license, productsFile, specific, product, data.id);
        }
        find.Access(data.extensions, productsFile, path + QStringLiteral(".extensions"),
                    ReferenceCheck::ProductOwner(data.id), product, data.id);
    }
    for (auto it = records.extensions.cbegin(); it != records.extensions.cend(); ++it) {
        const QString coverage = QStringLiteral("$.extensions.lic_coveradge.");
        for (const QString &license : Sorted(it.value().importLicenses))
            find.License(license, productsFile, coverage + QStringLiteral("import"), extension, it.key());
        for (const QString &license : Sorted(it.value().exportLicenses))
            find.License(license, productsFile, coverage + QStringLiteral("export"), extension, it.key());
    }
    for (auto file = layoutFiles.cbegin(); file != layoutFiles.cend(); ++file) {
        for (const QString &name : file.value()) {
            const auto layout = records.layouts.constFind(name);
            if (layout != records.layouts.cend())
                find.Access(layout.value(), file.key(), QStringLiteral("$.layouts.%1.extensions").arg(name),
                            ReferenceCheck::LayoutOwner(name), Diagnostic::Subject::None, QString());
        }
    }
    return out;
}

} // namespace ProductEditor
