#include "store/CanonicalDocument.h"

#include "store/CanonicalProductsCheck.h"
#include "store/JsonText.h"
#include "store/ParsedDocument.h"
#include "store/VantixJsonData.h"

#include <QJsonDocument>

namespace ProductEditor {

namespace {

const QString kLayouts = QStringLiteral("layouts");

// A store that reads nothing: the document is handed to it as if it had been loaded,
// so that the regeneration normalize runs is the only place the canonical form is made.
class DetachedStore
{
public:
    DetachedStore()
        : m_store(QString(), [](const QString &) { return QByteArray(); }, Writer(), QMap<QString, QString>())
    {
    }

    QJsonObject RegenerateProducts(const QJsonObject &document)
    {
        m_store.GetProductsOriginalJson() = document;
        m_store.GetProductsResultJson() = document;
        _Regenerate();
        return m_store.GetProductsResultJson();
    }

    QJsonObject RegenerateLayouts(const QJsonObject &document)
    {
        QMap<QString, QJsonObject> &layouts = m_store.GetLayoutsOriginalJsons();
        const QJsonObject read = document.value(kLayouts).toObject();
        for (auto it = read.begin(); it != read.end(); ++it)
            layouts.insert(it.key(), it.value().toObject());
        m_store.GetLayoutsResultJsons() = layouts;
        _Regenerate();
        QJsonObject written;
        const QMap<QString, QJsonObject> &result = m_store.GetLayoutsResultJsons();
        for (auto it = read.begin(); it != read.end(); ++it)
            written.insert(it.key(), result.value(it.key()));
        return QJsonObject{{kLayouts, written}};
    }

private:
    void _Regenerate()
    {
        m_store.UpdateData();
        m_store.UpdateResultJsons();
    }

    VantixJsonData m_store;
};

} // namespace

CanonicalDocument::Kind CanonicalDocument::KindOf(const QJsonObject &document)
{
    if (document.isEmpty())
        return None;
    if (document.size() == 1 && document.contains(kLayouts))
        return Layouts;
    return Products;
}

QJsonObject CanonicalDocument::CanonicalObject(const QJsonObject &document)
{
    // Most documents arrive as the editor wrote them; those need no regeneration.
    return IsCanonicalProductsDocument(document) ? document : RegeneratedObject(document);
}

QJsonObject CanonicalDocument::RegeneratedObject(const QJsonObject &document)
{
    switch (KindOf(document)) {
    case Products: return DetachedStore().RegenerateProducts(document);
    case Layouts: return DetachedStore().RegenerateLayouts(document);
    case None: break;
    }
    return QJsonObject();
}

QByteArray CanonicalDocument::Bytes(const QJsonObject &document)
{
    return JsonText(QJsonDocument(document), QJsonDocument::Indented);
}

CanonicalDocument CanonicalizeDefinitionDocument(const QByteArray &bytes)
{
    CanonicalDocument canonical;
    const ParsedDocument parsed = ParseJsonDocument(bytes);
    if (!parsed.ok()) {
        canonical.error = parsed.error;
        canonical.line = parsed.line;
        canonical.column = parsed.column;
        return canonical;
    }
    canonical.object = CanonicalDocument::CanonicalObject(parsed.object);
    if (canonical.object.isEmpty()) {
        canonical.error = QStringLiteral("neither a products document nor a layout file");
        return canonical;
    }
    canonical.bytes = CanonicalDocument::Bytes(canonical.object);
    return canonical;
}

} // namespace ProductEditor
