#include "store/FollowingChanges.h"

#include "store/DefinitionKeys.h"

#include <QSet>

#include <algorithm>

namespace ProductEditor {

namespace {

using Kind = RecordChange::Kind;

// The membership changes of one feature in one name list.
struct Membership
{
    QSet<QString> joined;
    QSet<QString> left;
};

Membership MembershipAt(const RecordChanges &features, int first, const QString &field)
{
    Membership membership;
    for (int i = first; i < features.size() && features.at(i).id == features.at(first).id; ++i) {
        const RecordChange &change = features.at(i);
        if (change.field == field && change.kind == Kind::Gained)
            membership.joined.insert(change.after);
        else if (change.field == field && change.kind == Kind::Lost)
            membership.left.insert(change.before);
    }
    return membership;
}

// Open and import read a file in; the coverage lists name licenses for reading in
// ("import") and writing out ("export").
const QSet<QString> *CoveringSet(const ExtensionInfo &extension, const QString &role)
{
    if (role == Keys::kOpen || role == Keys::kImport || role == Keys::kImportAsProject)
        return &extension.importLicenses;
    if (role == Keys::kExport || role == Keys::kExportAsProject || role == Keys::kExportAsScene)
        return &extension.exportLicenses;
    return nullptr;
}

void DropFollowingChanges(RecordChanges &features, const RecordChanges &owners, const QString &field)
{
    QSet<QString> removed;
    QMap<QString, QString> newName, oldName;
    for (const RecordChange &owner : owners) {
        if (owner.kind == Kind::Removed)
            removed.insert(owner.id);
        else if (owner.kind == Kind::Renamed) {
            newName.insert(owner.id, owner.after);
            oldName.insert(owner.after, owner.id);
        }
    }
    if (removed.isEmpty() && newName.isEmpty())
        return;
    RecordChanges kept;
    Membership membership;
    for (int i = 0; i < features.size(); ++i) {
        const RecordChange &change = features.at(i);
        if (i == 0 || change.id != features.at(i - 1).id)
            membership = MembershipAt(features, i, field);
        bool follows = false;
        if (change.field == field && change.kind == Kind::Gained)
            follows = oldName.contains(change.after) && membership.left.contains(oldName.value(change.after));
        else if (change.field == field && change.kind == Kind::Lost)
            follows = removed.contains(change.before)
                      || (newName.contains(change.before) && membership.joined.contains(newName.value(change.before)));
        if (!follows)
            kept.append(change);
    }
    features = kept;
}

} // namespace

RecordChanges FoldFollowingChanges(const RecordChanges &changes)
{
    RecordChanges features, products, layouts, rest;
    for (const RecordChange &change : changes) {
        switch (change.record) {
        case RecordChange::Record::Feature: features.append(change); break;
        case RecordChange::Record::Product: products.append(change); break;
        case RecordChange::Record::Layout: layouts.append(change); break;
        default: rest.append(change); break;
        }
    }
    DropFollowingChanges(features, products, Keys::kProducts);
    DropFollowingChanges(features, layouts, Keys::kLayouts);
    return features + products + layouts + rest;
}

void NameCoveringLicenses(RecordChanges &changes, const QMap<QString, ExtensionInfo> &before,
                          const QMap<QString, ExtensionInfo> &after)
{
    for (RecordChange &change : changes) {
        const bool gained = change.kind == Kind::Gained;
        if (!gained && change.kind != Kind::Lost)
            continue;
        const QString &name = gained ? change.after : change.before;
        const QMap<QString, ExtensionInfo> &side = gained ? after : before;
        const auto extension = side.constFind(name);
        if (extension == side.cend())
            continue;
        if (const QSet<QString> *licenses = CoveringSet(*extension, change.field)) {
            change.licenses = QStringList(licenses->cbegin(), licenses->cend());
            std::sort(change.licenses.begin(), change.licenses.end());
        }
    }
}

} // namespace ProductEditor
