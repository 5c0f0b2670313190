#include "check/ReferenceCheck.h"

namespace ProductEditor {

namespace {

const QString kBothStay = QStringLiteral("both stay and most operations use the first");

const char *const kAccessRoles[] = {"import", "import_as_project", "export", "export_as_project", "export_as_scene",
                                    "open"};

// The node under `node` along `keys`, or -1.
int Find(const JsonPositionScanner &json, int node, std::initializer_list<const char *> keys)
{
    for (const char *key : keys)
        node = json.member(node, QLatin1String(key));
    return node;
}

// The string elements of an array; other elements are the shape check's.
template <typename Visit>
void ForEachName(const JsonPositionScanner &json, int array, Visit visit)
{
    if (json.kind(array) != JsonPositionScanner::Kind::Array)
        return;
    const int count = json.childCount(array);
    for (int i = 0; i < count; ++i) {
        const int element = json.child(array, i);
        if (json.kind(element) == JsonPositionScanner::Kind::String)
            visit(element, json.string(element));
    }
}

template <typename Visit>
void ForEachObject(const JsonPositionScanner &json, int array, Visit visit)
{
    const int count = json.kind(array) == JsonPositionScanner::Kind::Array ? json.childCount(array) : 0;
    for (int i = 0; i < count; ++i) {
        const int element = json.child(array, i);
        if (json.kind(element) == JsonPositionScanner::Kind::Object)
            visit(element);
    }
}

// An entry's id as loading reads it: "" when missing or not a string.
QString IdOf(const JsonPositionScanner &json, int entry)
{
    return json.string(json.member(entry, QLatin1String("id")));
}

// Where a finding about an entry is placed: at its "id", or at the entry without one.
int IdPlace(const JsonPositionScanner &json, int entry)
{
    const int idNode = json.member(entry, QLatin1String("id"));
    return idNode >= 0 ? idNode : entry;
}

Diagnostic About(Diagnostic diagnostic, Diagnostic::Subject subject, const QString &id)
{
    diagnostic.subject = subject;
    diagnostic.subjectId = id;
    return diagnostic;
}

} // namespace

QString ReferenceCheck::UndefinedLayout(const QString &mode, const QString &product)
{
    return QStringLiteral("layout \"%1\" of product \"%2\" is defined in no layout file; the product keeps the name, "
                          "which offers no layout")
        .arg(mode, product);
}

QString ReferenceCheck::UndefinedLicensingFeature(const QString &product, const QString &feature)
{
    return QStringLiteral("licensing of product \"%1\" names feature \"%2\", which no \"feature\" entry defines; the "
                          "licenses are kept for no feature")
        .arg(product, feature);
}

QString ReferenceCheck::UndefinedAccessExtension(const QString &owner, const QString &extension, const QString &role)
{
    return QStringLiteral("%1 lists extension \"%2\" under \"%3\", which no \"extension\" entry defines; the name is "
                          "kept for no extension")
        .arg(owner, extension, role);
}

QString ReferenceCheck::MissingLicense(const QString &license)
{
    return QStringLiteral("license \"%1\" is missing from the license catalogue; the name is kept but the catalogue "
                          "cannot show it")
        .arg(license);
}

QString ReferenceCheck::ProductOwner(const QString &product)
{
    return QStringLiteral("product \"%1\"").arg(product);
}

// As the files' finding says it, without the line no record has.
QString ReferenceCheck::ProductDefinedAgain(const QString &product)
{
    return QStringLiteral("product \"%1\" is defined again; %2").arg(product, kBothStay);
}

QString ReferenceCheck::LayoutOwner(const QString &layout)
{
    return QStringLiteral("layout \"%1\"").arg(layout);
}

ReferenceCheck::ReferenceCheck(const ScannedDocument &products, const QVector<const ScannedDocument *> &layouts,
                               std::optional<QSet<QString>> catalogue)
    : m_products(products)
    , m_layouts(layouts)
    , m_catalogue(std::move(catalogue))
{
}

Diagnostics ReferenceCheck::Run()
{
    m_features = CollectIds("features", "feature", "PE002", Diagnostic::Subject::Feature, QStringLiteral("feature"),
                            QStringLiteral("loading keeps this later entry"));
    m_extensions = CollectIds("extensions", "extension", "PE003", Diagnostic::Subject::Extension, QStringLiteral("extension"),
                              QStringLiteral("loading keeps this later entry"));
    CollectIds("products", "product", "PE004", Diagnostic::Subject::Product, QStringLiteral("product"), kBothStay);
    CollectLayouts();
    const JsonPositionScanner &json = m_products.json;
    ForEachObject(json, Find(json, json.root(), {"products", "product"}), [this](int product) { CheckProduct(product); });
    CheckCoverage();
    for (const ScannedDocument *document : m_layouts) {
        const int layouts = document->json.member(document->json.root(), QLatin1String("layouts"));
        for (int i = 0; i < document->json.childCount(layouts); ++i) {
            const int layout = document->json.child(layouts, i);
            if (document->json.kind(layout) == JsonPositionScanner::Kind::Object)
                CheckLayout(*document, layout);
        }
    }
    return std::move(m_out);
}

QHash<QString, int> ReferenceCheck::CollectIds(const char *section, const char *array, const char *code,
                                               Diagnostic::Subject subject, const QString &what,
                                               const QString &consequence)
{
    const JsonPositionScanner &json = m_products.json;
    QHash<QString, int> lines;
    ForEachObject(json, Find(json, json.root(), {section, array}), [&](int entry) {
        const QString id = IdOf(json, entry);
        const int at = IdPlace(json, entry);
        const auto first = lines.constFind(id);
        if (first == lines.cend()) {
            lines.insert(id, json.line(at));
            return;
        }
        m_out << About(m_products.At(at, code,
                                     QStringLiteral("%1 \"%2\" is defined again (first on line %3); %4")
                                         .arg(what, id, QString::number(first.value()), consequence)),
                       subject, id);
    });
    return lines;
}

void ReferenceCheck::CollectLayouts()
{
    // Later files win a shared name, so each earlier definition is told which file wins.
    QHash<QString, QPair<const ScannedDocument *, int>> seen;
    for (const ScannedDocument *document : m_layouts) {
        const JsonPositionScanner &json = document->json;
        const int layouts = json.member(json.root(), QLatin1String("layouts"));
        if (json.kind(layouts) != JsonPositionScanner::Kind::Object)
            continue;
        for (int i = 0; i < json.childCount(layouts); ++i) {
            const int layout = json.child(layouts, i);
            const QString name = json.key(layout);
            const auto earlier = seen.constFind(name);
            if (earlier != seen.cend() && earlier.value().first != document) {
                m_out << earlier.value().first->At(
                    earlier.value().second, "PE013",
                    QStringLiteral("layout \"%1\" is defined again in %2, which is read later and wins")
                        .arg(name, document->file));
            }
            seen.insert(name, {document, layout});
            m_layoutNames.insert(name);
        }
    }
}

void ReferenceCheck::CheckProduct(int product)
{
    const JsonPositionScanner &json = m_products.json;
    const QString id = IdOf(json, product);
    m_subject = Diagnostic::Subject::Product;
    m_subjectId = id;
    CheckFeatureNames(m_products, json.member(product, QLatin1String("features")));
    ForEachName(json, json.member(product, QLatin1String("modes")), [&](int node, const QString &mode) {
        if (!m_layoutNames.contains(mode))
            m_out << About(m_products.At(node, "PE005", UndefinedLayout(mode, id)), Diagnostic::Subject::Product, id);
    });
    const int licensing = json.member(product, QLatin1String("licensing"));
    CheckLicense(m_products, json.member(licensing, QLatin1String("base")));
    ForEachObject(json, json.member(licensing, QLatin1String("specific")), [&](int entry) {
        const QString feature = IdOf(json, entry);
        if (!m_features.contains(feature)) {
            m_out << About(m_products.At(IdPlace(json, entry), "PE006", UndefinedLicensingFeature(id, feature)),
                           Diagnostic::Subject::Product, id);
        }
        CheckLicenses(m_products, json.member(entry, QLatin1String("licenses")));
    });
    CheckAccess(m_products, json.member(product, QLatin1String("extensions")), ProductOwner(id));
}

void ReferenceCheck::CheckCoverage()
{
    const JsonPositionScanner &json = m_products.json;
    const int coverage = Find(json, json.root(), {"extensions", "lic_coveradge"});
    for (const char *role : {"export", "import"}) {
        ForEachObject(json, json.member(coverage, QLatin1String(role)), [&](int entry) {
            const QString id = IdOf(json, entry);
            m_subject = Diagnostic::Subject::Extension;
            m_subjectId = id;
            if (!m_extensions.contains(id)) {
                m_out << About(m_products.At(IdPlace(json, entry), "PE007",
                                       QStringLiteral("%1 coverage names extension \"%2\", which no \"extension\" "
                                                      "entry defines; loading creates an empty extension")
                                           .arg(QLatin1String(role), id)),
                               Diagnostic::Subject::Extension, id);
            }
            CheckLicenses(m_products, json.member(entry, QLatin1String("lic")));
        });
    }
}

void ReferenceCheck::CheckLayout(const ScannedDocument &document, int layout)
{
    m_subject = Diagnostic::Subject::None;
    m_subjectId.clear();
    CheckFeatureNames(document, document.json.member(layout, QLatin1String("features")));
    CheckAccess(document, document.json.member(layout, QLatin1String("extensions")),
                LayoutOwner(document.json.key(layout)));
}

void ReferenceCheck::CheckFeatureNames(const ScannedDocument &document, int array)
{
    ForEachName(document.json, array, [&](int node, const QString &feature) {
        if (!m_features.contains(feature))
            m_out << About(document.At(node, "PE001",
                                 QStringLiteral("feature \"%1\" is defined in no \"feature\" entry; loading creates "
                                                "an empty feature")
                                     .arg(feature)),
                           Diagnostic::Subject::Feature, feature);
    });
}

void ReferenceCheck::CheckAccess(const ScannedDocument &document, int access, const QString &owner)
{
    for (const char *role : kAccessRoles) {
        ForEachName(document.json, document.json.member(access, QLatin1String(role)), [&](int node, const QString &id) {
            if (!m_extensions.contains(id))
                m_out << About(document.At(node, "PE007", UndefinedAccessExtension(owner, id, QLatin1String(role))),
                               m_subject, m_subjectId);
        });
    }
}

void ReferenceCheck::CheckLicenses(const ScannedDocument &document, int array)
{
    ForEachName(document.json, array, [&](int node, const QString &) { CheckLicense(document, node); });
}

void ReferenceCheck::CheckLicense(const ScannedDocument &document, int node)
{
    if (!m_catalogue || document.json.kind(node) != JsonPositionScanner::Kind::String)
        return;
    const QString license = document.json.string(node);
    if (!m_catalogue->contains(license))
        m_out << About(document.At(node, "PE008", MissingLicense(license)), m_subject, m_subjectId);
}

} // namespace ProductEditor
