// Diffs two JSON objects, patches the left one with every action at 1, then
// ticks sides as the input says and patches both objects again.
#include "FuzzSupport.h"

#include "diff/VantixFeaturesDiffModel.h"
#include "json/QJsonDiffTreeItem.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

using namespace ProductEditor;

namespace {

QByteArray Text(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// Whether a patch with every action at 1 must give `left` back. Arrays are the
// catch: their children are found by key, the element's string or its object's
// "id" as text, and numbers, booleans, nested arrays and id-less objects all
// share the key "" (a left-only number is kept and then appended once more as
// an unhandled child). A string that equals an object id, or an id that repeats
// on one side, makes an element pick up a child that was built for another one.
// Arrays are only checked when every element has a key of its own.
bool PatchRestoresLeft(const QJsonValue &left, const QJsonValue &right)
{
    if (left.isObject()) {
        const QJsonObject lo = left.toObject();
        const QJsonObject ro = right.toObject();
        for (auto it = lo.constBegin(); it != lo.constEnd(); ++it) {
            const QJsonValue r = ro.value(it.key());
            if (!r.isUndefined() && it.value() != r && !PatchRestoresLeft(it.value(), r))
                return false;
        }
        return true;
    }
    if (!left.isArray())
        return true;
    const QJsonArray la = left.toArray();
    const QJsonArray ra = right.toArray();
    if (la == ra)
        return true;
    QSet<QString> strings;
    QSet<QString> ids;
    for (const QJsonArray &side : {la, ra}) {
        QSet<QString> sideIds;
        for (const QJsonValue &element : side) {
            if (element.isString()) {
                strings.insert(element.toString());
                continue;
            }
            const QJsonValue id = element.toObject().value(QStringLiteral("id"));
            if (!element.isObject() || !id.isString() || sideIds.contains(id.toString()))
                return false;
            sideIds.insert(id.toString());
        }
        ids.unite(sideIds);
    }
    if (strings.intersects(ids))
        return false;
    for (const QJsonValue &element : la) {
        if (!element.isObject())
            continue;
        const QJsonValue id = element.toObject().value(QStringLiteral("id"));
        for (const QJsonValue &partner : ra) {
            if (partner.toObject().value(QStringLiteral("id")) != id)
                continue;
            if (partner != element && !PatchRestoresLeft(element, partner))
                return false;
            break;
        }
    }
    return true;
}

// Ticks a side on every row, depth first, one input byte per row, and reads
// every cell the view would show.
void TickSides(VantixFeaturesDiffModel &model, const QModelIndex &parent, const QByteArray &choices, int &next)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex cell = model.index(row, column, parent);
            model.data(cell, Qt::DisplayRole);
            model.data(cell, Qt::CheckStateRole);
            model.flags(cell);
        }
        const char choice = next < choices.size() ? choices.at(next++) : 0;
        const int column = (choice & 1) ? 2 : 1;
        model.setData(model.index(row, column, parent), (choice & 2) == 0, Qt::CheckStateRole);
        TickSides(model, model.index(row, 0, parent), choices, next);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzSupport::SilenceMessages();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QList<QByteArray> parts = FuzzSupport::SplitInput(data, size, 3);
    const QJsonObject left = QJsonDocument::fromJson(parts.value(0)).object();
    const QJsonObject right = QJsonDocument::fromJson(parts.value(1)).object();

    VantixFeaturesDiffModel model;
    bool found = false;
    {
        // Only around the reset: ticking a side announces a top-level row
        // through column 3, past the last column, which the tester rejects.
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        found = model.Regenerate(left, right);
    }
    const int topRows = model.GetRoot() ? model.GetRoot()->childCount() : -1;
    if (found != (topRows > 0))
        FuzzSupport::Fail("Regenerate is true when the root has children", QByteArray::number(topRows),
                          found ? "true" : "false");
    if (left == right && found)
        FuzzSupport::Fail("equal objects have no difference", Text(left), Text(right));

    // A string that starts with U+FEFF is held by the bytes it was read with and
    // compares by its decoded text elsewhere, so equality says nothing about it.
    QJsonObject patched = left;
    model.ApplyPatch(patched);
    if (!FuzzSupport::HasStringStartingWithBom(parts.value(0)) && PatchRestoresLeft(left, right)
        && patched != left)
        FuzzSupport::Fail("every action at 1 gives the left object back", Text(left), Text(patched));

    int next = 0;
    TickSides(model, QModelIndex(), parts.value(2), next);
    // A patch never adds or removes a member of the object it patches.
    for (QJsonObject target : {left, right}) {
        const QStringList keys = target.keys();
        model.ApplyPatch(target);
        if (target.keys() != keys)
            FuzzSupport::Fail("a patch keeps the members", keys.join(QLatin1Char(',')).toUtf8(),
                              target.keys().join(QLatin1Char(',')).toUtf8());
    }
    return 0;
}
