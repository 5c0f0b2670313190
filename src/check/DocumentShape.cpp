#include "check/DocumentShape.h"

#include <QHash>

namespace ProductEditor {

using Type = DocumentShape::Type;

namespace {

DocumentShape Leaf(Type type, const char *readsAs)
{
    DocumentShape shape;
    shape.type = type;
    shape.readsAs = readsAs;
    return shape;
}

DocumentShape ArrayOf(const DocumentShape &element)
{
    DocumentShape shape = Leaf(Type::Array, "an empty array");
    shape.element = &element;
    return shape;
}

DocumentShape ObjectOf(bool dropsUnknownKeys, QVector<QPair<QLatin1String, const DocumentShape *>> members,
                       const char *readsAs = "an empty object")
{
    DocumentShape shape = Leaf(Type::Object, readsAs);
    shape.dropsUnknownKeys = dropsUnknownKeys;
    shape.members = std::move(members);
    return shape;
}

QLatin1String Key(const char *name)
{
    return QLatin1String(name);
}

const DocumentShape kText = Leaf(Type::String, "\"\"");
const DocumentShape kName = Leaf(Type::String, "the empty name \"\"");
const DocumentShape kNames = ArrayOf(kName);
const DocumentShape kFalse = Leaf(Type::Bool, "false");
const DocumentShape kTrue = Leaf(Type::Bool, "true");
const char *const kNoKeys = "an entry with no keys";

const DocumentShape kAccess = ObjectOf(true, {{Key("import"), &kNames},
                                              {Key("import_as_project"), &kNames},
                                              {Key("export"), &kNames},
                                              {Key("export_as_project"), &kNames},
                                              {Key("export_as_scene"), &kNames},
                                              {Key("open"), &kNames}});

const DocumentShape kExtensionEntry = ObjectOf(true,
                                               {{Key("id"), &kText},
                                                {Key("cad_support"), &kFalse},
                                                {Key("load_as_part"), &kFalse},
                                                {Key("ext"), &kText},
                                                {Key("slices_support"), &kFalse},
                                                {Key("multiple_parts_support"), &kFalse},
                                                {Key("title"), &kText}},
                                               kNoKeys);
const DocumentShape kExtensionEntries = ArrayOf(kExtensionEntry);
const DocumentShape kCoverageEntry = ObjectOf(true, {{Key("id"), &kText}, {Key("lic"), &kNames}}, kNoKeys);
const DocumentShape kCoverageEntries = ArrayOf(kCoverageEntry);
const DocumentShape kCoverage = ObjectOf(false, {{Key("export"), &kCoverageEntries}, {Key("import"), &kCoverageEntries}});
const DocumentShape kExtensions = ObjectOf(false, {{Key("extension"), &kExtensionEntries},
                                                   {Key("lic_coveradge"), &kCoverage}});

const DocumentShape kFeatureEntry = ObjectOf(true,
                                             {{Key("id"), &kText},
                                              {Key("statustip"), &kText},
                                              {Key("title"), &kText},
                                              {Key("tooltip"), &kText},
                                              {Key("visual"), &kTrue},
                                              {Key("emergency"), &kFalse}},
                                             kNoKeys);
const DocumentShape kFeatureEntries = ArrayOf(kFeatureEntry);
const DocumentShape kFeatures = ObjectOf(false, {{Key("feature"), &kFeatureEntries}});

const DocumentShape kSpecificEntry = ObjectOf(true, {{Key("id"), &kText}, {Key("licenses"), &kNames}}, kNoKeys);
const DocumentShape kSpecificEntries = ArrayOf(kSpecificEntry);
const DocumentShape kLicensing = ObjectOf(true, {{Key("base"), &kText}, {Key("specific"), &kSpecificEntries}});
const DocumentShape kProductEntry = ObjectOf(true,
                                             {{Key("id"), &kText},
                                              {Key("profile_suffix"), &kText},
                                              {Key("licensing"), &kLicensing},
                                              {Key("modes"), &kNames},
                                              {Key("extensions"), &kAccess},
                                              {Key("features"), &kNames}},
                                             kNoKeys);
const DocumentShape kProductEntries = ArrayOf(kProductEntry);
const DocumentShape kProducts = ObjectOf(true, {{Key("product"), &kProductEntries}});

const DocumentShape kLayout = ObjectOf(true, {{Key("extensions"), &kAccess}, {Key("features"), &kNames}},
                                       "a layout with no keys");

DocumentShape LayoutsObject()
{
    DocumentShape shape = ObjectOf(false, {});
    shape.element = &kLayout;
    return shape;
}
const DocumentShape kLayouts = LayoutsObject();

QString TypeName(Type type)
{
    switch (type) {
    case Type::String: return QStringLiteral("a string");
    case Type::Bool: return QStringLiteral("a boolean");
    case Type::Array: return QStringLiteral("an array");
    case Type::Object: return QStringLiteral("an object");
    case Type::Any: break;
    }
    return QString();
}

bool Matches(Type type, JsonPositionScanner::Kind kind)
{
    using Kind = JsonPositionScanner::Kind;
    switch (type) {
    case Type::String: return kind == Kind::String;
    case Type::Bool: return kind == Kind::Bool;
    case Type::Array: return kind == Kind::Array;
    case Type::Object: return kind == Kind::Object;
    case Type::Any: break;
    }
    return true;
}

// "\"visual\": \"no\"" for a member, "\"no\"" for an array element.
QString Subject(const ScannedDocument &document, int node)
{
    const QString value = document.ValueText(node);
    return document.json.isMember(node) ? QStringLiteral("\"%1\": %2").arg(document.json.key(node), value) : value;
}

// For each member of `object`, the next member with the same key, or -1. The parser
// keeps only the last of them.
QVector<int> LaterSameKeys(const JsonPositionScanner &json, int object)
{
    const int count = json.childCount(object);
    QVector<int> later(count, -1);
    constexpr int pairwiseLimit = 16;
    if (count <= pairwiseLimit) {
        for (int i = 0; i < count; ++i) {
            for (int j = i + 1; j < count && later.at(i) < 0; ++j) {
                if (json.sameKey(json.child(object, i), json.child(object, j)))
                    later[i] = json.child(object, j);
            }
        }
        return later;
    }
    QHash<QString, int> next;
    for (int i = count - 1; i >= 0; --i) {
        const int child = json.child(object, i);
        int &slot = next[json.key(child)];
        later[i] = slot > 0 ? slot : -1;
        slot = child;
    }
    return later;
}

} // namespace

const DocumentShape &DocumentShape::ProductsDocument()
{
    static const DocumentShape shape = ObjectOf(false, {{Key("extensions"), &kExtensions},
                                                        {Key("features"), &kFeatures},
                                                        {Key("products"), &kProducts}});
    return shape;
}

const DocumentShape &DocumentShape::LayoutDocument()
{
    static const DocumentShape shape = ObjectOf(true, {{Key("layouts"), &kLayouts}});
    return shape;
}

void DocumentShape::Check(const ScannedDocument &document, int node, Diagnostics &out) const
{
    const JsonPositionScanner &json = document.json;
    if (!Matches(type, json.kind(node))) {
        out << document.At(node, "PE010",
                           QStringLiteral("%1 is not %2; loading reads it as %3")
                               .arg(Subject(document, node), TypeName(type), QString::fromLatin1(readsAs)));
        return;
    }
    if (type == Type::Array && element) {
        const int count = json.childCount(node);
        for (int i = 0; i < count; ++i)
            element->Check(document, json.child(node, i), out);
    } else if (type == Type::Object) {
        CheckMembers(document, node, out);
    }
}

void DocumentShape::CheckMembers(const ScannedDocument &document, int node, Diagnostics &out) const
{
    const JsonPositionScanner &json = document.json;
    const int count = json.childCount(node);
    const QVector<int> later = LaterSameKeys(json, node);
    for (int i = 0; i < count; ++i) {
        const int child = json.child(node, i);
        if (later.at(i) >= 0) {
            out << document.At(child, "PE015",
                               QStringLiteral("%1 repeats on line %2; loading keeps only the later value")
                                   .arg(Subject(document, child))
                                   .arg(json.line(later.at(i))));
        } else if (const DocumentShape *shape = MemberShape(json, child))
            shape->Check(document, child, out);
        else if (dropsUnknownKeys)
            out << document.At(child, "PE009",
                               QStringLiteral("%1 is not a key the editor knows; saving drops it")
                                   .arg(Subject(document, child)));
    }
}

const DocumentShape *DocumentShape::MemberShape(const JsonPositionScanner &json, int node) const
{
    for (const auto &member : members) {
        if (json.hasKey(node, member.first))
            return member.second;
    }
    return element;
}

} // namespace ProductEditor
