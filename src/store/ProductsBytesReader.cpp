#include "store/ProductsBytesReader.h"

#include "store/DefinitionKeys.h"
#include "store/JsonByteScanner.h"
#include "store/SecondCore.h"

#include <QLatin1String>

#include <initializer_list>
#include <vector>

namespace ProductEditor {

using namespace Keys;

namespace {

// Documents of this many bytes hold about one feature each, as the files come.
const int kBytesPerFeature = 256;
// Below this a second thread costs more than it saves.
const int kBytesAside = 1 << 20;

// Reads the keys of one object; `wanted` says which keys it knows.
class ObjectKeys
{
public:
    ObjectKeys(JsonByteScanner &scanner, std::initializer_list<const QString *> wanted)
        : m_scanner(scanner)
    {
        for (const QString *name : wanted) {
            if (m_count < kMostKeys)
                m_wanted[m_count++] = name;
        }
        m_open = m_scanner.peek() == '{' ? m_scanner.enterObject() : (m_scanner.skipValue(), false);
    }

    // The index of the next key among the wanted ones, -1 for another key (whose value
    // the caller skips), or false at the end. A wanted key met twice ends the reading.
    bool next(int &which)
    {
        const char *key = nullptr;
        int length = 0;
        if (!m_open || !m_scanner.nextKey(key, length))
            return false;
        which = -1;
        for (int index = 0; index < m_count; ++index) {
            if (QLatin1String(key, length) == *m_wanted[index]) {
                if (m_seen & (1u << index)) {
                    m_scanner.fail();
                    return false;
                }
                m_seen |= 1u << index;
                which = index;
                break;
            }
        }
        return true;
    }

private:
    static const int kMostKeys = 8;

    JsonByteScanner &m_scanner;
    const QString *m_wanted[kMostKeys] = {};
    int m_count = 0;
    quint32 m_seen = 0;
    bool m_open = false;
};

// Calls `read` for every element of an array; anything but an array reads as empty.
template<typename Read>
void ForEach(JsonByteScanner &s, Read read)
{
    if (s.peek() != '[') {
        s.skipValue();
        return;
    }
    s.enterArray();
    while (s.nextElement())
        read();
}

void Add(QSet<QString> &names, QString name) { names.insert(name); }
void Add(QVector<QString> &names, QString name) { names.append(std::move(name)); }
template<typename Names>
void ReadNames(JsonByteScanner &s, Names &into)
{
    ForEach(s, [&] { Add(into, s.readText()); });
}

void ReadNames(JsonByteScanner &s, std::vector<QLatin1String> &into)
{
    ForEach(s, [&] { into.push_back(s.readName()); });
}

ExtensionAccess ReadAccess(JsonByteScanner &s)
{
    ExtensionAccess access;
    ObjectKeys keys(s, {&kImport, &kImportAsProject, &kExport, &kExportAsProject, &kExportAsScene, &kOpen});
    QSet<QString> *const roles[] = {&access.import, &access.import_as_project, &access.export_,
                                    &access.export_as_project, &access.export_as_scene, &access.open};
    for (int which = -1; keys.next(which);) {
        if (which < 0)
            s.skipValue();
        else
            ReadNames(s, *roles[which]);
    }
    return access;
}

void ReadExtension(JsonByteScanner &s, ProductsParts &parts)
{
    ProductsParts::Extension entry;
    ExtensionInfo &info = entry.info;
    ObjectKeys keys(s, {&kId, &kCadSupport, &kLoadAsPart, &kExt, &kSlicesSupport, &kMultiplePartsSupport, &kTitle});
    for (int which = -1; keys.next(which);) {
        switch (which) {
        case 0: entry.id = s.readText(); break;
        case 1: info.cad_support = s.readFlag(false); break;
        case 2: info.load_as_part = s.readFlag(false); break;
        case 3: info.ext = s.readText(); break;
        case 4: info.slices_support = s.readFlag(false); break;
        case 5: info.multiple_parts_support = s.readFlag(false); break;
        case 6: info.title = s.readText(); break;
        default: s.skipValue();
        }
    }
    parts.extensions.append(entry);
}

void ReadCoverage(JsonByteScanner &s, QVector<ProductsParts::Coverage> &into)
{
    ForEach(s, [&] {
        ProductsParts::Coverage entry;
        ObjectKeys keys(s, {&kId, &kLic});
        for (int which = -1; keys.next(which);) {
            if (which == 0)
                entry.id = s.readText();
            else if (which == 1)
                ReadNames(s, entry.licenses);
            else
                s.skipValue();
        }
        into.append(entry);
    });
}

void ReadExtensions(JsonByteScanner &s, ProductsParts &parts)
{
    ObjectKeys keys(s, {&kExtension, &kCoverage});
    for (int which = -1; keys.next(which);) {
        if (which == 0) {
            ForEach(s, [&] { ReadExtension(s, parts); });
        } else if (which == 1) {
            ObjectKeys sides(s, {&kExport, &kImport});
            for (int side = -1; sides.next(side);) {
                if (side < 0)
                    s.skipValue();
                else
                    ReadCoverage(s, side == 0 ? parts.exportCoverage : parts.importCoverage);
            }
        } else {
            s.skipValue();
        }
    }
}

void ReadFeature(JsonByteScanner &s, ProductsParts &parts)
{
    QLatin1String id;
    VantixFeatureData feature;
    ObjectKeys keys(s, {&kId, &kStatustip, &kTitle, &kTooltip, &kVisual, &kEmergency});
    for (int which = -1; keys.next(which);) {
        switch (which) {
        case 0: id = s.readName(); break;
        case 1: feature.statustip = s.readText(); break;
        case 2: feature.title = s.readText(); break;
        case 3: feature.tooltip = s.readText(); break;
        case 4: feature.visual = s.readFlag(true); break;
        case 5: feature.emergency = s.readFlag(false); break;
        default: s.skipValue();
        }
    }
    parts.features.addEntry(id, std::move(feature));
}

void ReadLicensing(JsonByteScanner &s, ProductData &product)
{
    ObjectKeys keys(s, {&kBase, &kSpecific});
    for (int which = -1; keys.next(which);) {
        if (which == 0) {
            product.base = s.readText();
        } else if (which == 1) {
            ForEach(s, [&] {
                QString id;
                QVector<QString> licenses;
                ObjectKeys entry(s, {&kId, &kLicenses});
                for (int field = -1; entry.next(field);) {
                    if (field == 0)
                        id = s.readText();
                    else if (field == 1)
                        ReadNames(s, licenses);
                    else
                        s.skipValue();
                }
                QSet<QString> &into = product.specificLicenses[id];
                for (const QString &license : licenses)
                    into.insert(license);
            });
        } else {
            s.skipValue();
        }
    }
}

void ReadProduct(JsonByteScanner &s, ProductsParts &parts, std::vector<QLatin1String> &members)
{
    ProductData product;
    ObjectKeys keys(s, {&kId, &kProfileSuffix, &kLicensing, &kModes, &kExtensions, &kFeatures});
    for (int which = -1; keys.next(which);) {
        switch (which) {
        case 0: product.id = s.readText(); break;
        case 1: product.profile_suffix = s.readText(); break;
        case 2: ReadLicensing(s, product); break;
        case 3: ReadNames(s, product.modes); break;
        case 4: product.extensions = ReadAccess(s); break;
        case 5: ReadNames(s, members); break;
        default: s.skipValue();
        }
    }
    parts.features.addProductMembers(members, parts.ownerOf(product.id));
    parts.products.append(std::move(product));
}

// The value under `key` of the object the scanner is on, read by `read`.
template<typename Read>
void ReadSection(JsonByteScanner &s, const QString &key, Read read)
{
    ObjectKeys keys(s, {&key});
    for (int which = -1; keys.next(which);) {
        if (which == 0)
            read();
        else
            s.skipValue();
    }
}

} // namespace

bool ReadProductsBytes(const QByteArray &bytes, ProductsParts &parts)
{
    JsonByteScanner s(bytes.constData(), bytes.constData() + bytes.size());
    if (s.peek() != '{')
        return false;
    parts.features = FeatureRecordsBuilder(bytes.size() / kBytesPerFeature);
    std::vector<QLatin1String> members;
    ObjectKeys keys(s, {&kExtensions, &kFeatures, &kProducts});
    for (int which = -1; keys.next(which);) {
        if (which == 0)
            ReadExtensions(s, parts);
        else if (which == 1)
            ReadSection(s, kFeature, [&] { ForEach(s, [&] { ReadFeature(s, parts); }); });
        else if (which == 2)
            ReadSection(s, kProduct, [&] { ForEach(s, [&] { ReadProduct(s, parts, members); }); });
        else
            s.skipValue();
    }
    return !s.failed();
}

std::future<std::optional<ProductsParts>> ReadProductsBytesAside(const QByteArray &bytes)
{
    // On one core, or for a small document, the parsed document is read instead.
    const bool aside = bytes.size() >= kBytesAside && HasSecondCore();
    return RunAside(
        [bytes, aside]() -> std::optional<ProductsParts> {
            ProductsParts parts;
            if (!aside || !ReadProductsBytes(bytes, parts))
                return std::nullopt;
            return parts;
        },
        aside);
}

} // namespace ProductEditor
