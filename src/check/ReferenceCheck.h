#pragma once

#include "ProductEditorExport.h"
#include "check/ScannedDocument.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <optional>

namespace ProductEditor {

// The checks that look across entries and files: ids defined twice, and names of
// features, layouts, extensions and licenses that nothing defines (PE001 to PE008, PE013).
class PRODUCT_EDITOR_EXPORT ReferenceCheck
{
public:
    // `layouts` in the order the loader read them; `catalogue` only when --licenses gave one.
    ReferenceCheck(const ScannedDocument &products, const QVector<const ScannedDocument *> &layouts,
                   std::optional<QSet<QString>> catalogue);

    Diagnostics Run();

    // The wording of the findings that the check of the records shares.
    static QString UndefinedLayout(const QString &mode, const QString &product);
    static QString UndefinedLicensingFeature(const QString &product, const QString &feature);
    static QString UndefinedAccessExtension(const QString &owner, const QString &extension, const QString &role);
    static QString MissingLicense(const QString &license);
    static QString ProductDefinedAgain(const QString &product);
    static QString ProductOwner(const QString &product);
    static QString LayoutOwner(const QString &layout);

private:
    QHash<QString, int> CollectIds(const char *section, const char *array, const char *code,
                                   Diagnostic::Subject subject, const QString &what, const QString &consequence);
    void CollectLayouts();
    void CheckProduct(int product);
    void CheckCoverage();
    void CheckLayout(const ScannedDocument &document, int layout);
    void CheckFeatureNames(const ScannedDocument &document, int array);
    void CheckAccess(const ScannedDocument &document, int access, const QString &owner);
    void CheckLicenses(const ScannedDocument &document, int array);
    void CheckLicense(const ScannedDocument &document, int node);

    const ScannedDocument &m_products;
    QVector<const ScannedDocument *> m_layouts;
    std::optional<QSet<QString>> m_catalogue;
    QHash<QString, int> m_features;   // id -> line of its first entry
    QHash<QString, int> m_extensions; // id -> line of its first entry
    QSet<QString> m_layoutNames;
    Diagnostics m_out;
    // The record whose names are being checked, for the findings about them.
    Diagnostic::Subject m_subject = Diagnostic::Subject::None;
    QString m_subjectId;
};

} // namespace ProductEditor
