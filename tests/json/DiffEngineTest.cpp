#include "DiffTreeDump.h"
#include "QuadraticDiff.h"
#include "RandomJson.h"

#include "json/QJsonDiffTreeItem.h"
#include "json/VantixFeaturesDiffModel.h"

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>
#include <QtConcurrent>

#include <memory>

using namespace ProductEditor;

namespace {

QJsonObject Obj(const char *json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray(json), &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("bad test JSON: %s", json);
    return document.object();
}

QString Compact(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

// Follows a path of keys ("s/a/v") from the top level; each step takes the first row with that key.
QModelIndex Find(const QAbstractItemModel &model, const QString &path)
{
    QModelIndex current;
    for (const QString &key : path.split(QLatin1Char('/'))) {
        QModelIndex next;
        for (int row = 0; row < model.rowCount(current) && !next.isValid(); ++row) {
            const QModelIndex candidate = model.index(row, 0, current);
            if (candidate.data().toString() == key)
                next = candidate;
        }
        if (!next.isValid())
            return QModelIndex();
        current = next;
    }
    return current;
}

// The reference tree built the quadratic way, under a root made as Regenerate makes it.
std::unique_ptr<QJsonDiffTreeItem> ReferenceTree(const QJsonObject &left, const QJsonObject &right, bool *result)
{
    auto root = std::make_unique<QJsonDiffTreeItem>(nullptr);
    root->setKey(QStringLiteral("root"));
    root->setType(QJsonValue::Object);
    *result = QuadraticDiff::BuildDiff(QJsonValue(left), QJsonValue(right), root.get());
    return root;
}

// Gives every node of both trees (walked in the same order) the same random side.
void ChooseSides(VantixFeaturesDiffModel &model, const QModelIndex &parent, QJsonTreeItem *reference,
                 RandomJson &random)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const bool right = random.Chance(50);
        model.setData(model.index(row, right ? 2 : 1, parent), Qt::Checked, Qt::CheckStateRole);
        auto *node = static_cast<QJsonDiffTreeItem *>(reference->child(row));
        node->setDiffAction(right ? UseRight : UseLeft);
        ChooseSides(model, model.index(row, 0, parent), node, random);
    }
}

QString DeepObject(int depth, const char *innermost)
{
    QString json;
    for (int i = 0; i < depth; ++i)
        json += QStringLiteral("{\"a\":");
    json += QLatin1String(innermost);
    for (int i = 0; i < depth; ++i)
        json += QLatin1Char('}');
    return json;
}

} // namespace

class DiffEngineTest : public QObject
{
    Q_OBJECT

private slots:
    void buildDiff_data();
    void buildDiff();
    void nodeFields();
    void indexedMatchesQuadratic_data();
    void indexedMatchesQuadratic();
    void allLeftPatchIsIdentity();
    void patchChoices_data();
    void patchChoices();
    void patchBeforeRegenerate();
    void hostileInput_data();
    void hostileInput();
    void deepNestingOnPoolThread();

    void headers();
    void sidesAndCheckStates_data();
    void sidesAndCheckStates();
    void tickingOtherSide();
    void notificationNamesTopLevelRow();
    void readOnlyMode();
    void flags();
    void navigation();
};

void DiffEngineTest::buildDiff_data()
{
    QTest::addColumn<QJsonObject>("left");
    QTest::addColumn<QJsonObject>("right");
    QTest::addColumn<QString>("shape");
    QTest::addColumn<bool>("result");

    QTest::newRow("equal objects") << Obj(R"({"a":1,"b":[1,{"id":"x"}]})")
                                   << Obj(R"({"b":[1,{"id":"x"}],"a":1})") << "" << false;
    QTest::newRow("1 and 1.0 are equal") << Obj(R"({"a":1})") << Obj(R"({"a":1.0})") << "" << false;
    QTest::newRow("changed member") << Obj(R"({"a":1})") << Obj(R"({"a":2})") << "a[1]" << true;
    QTest::newRow("runs: left-only, right-only, changed")
        << Obj(R"({"z":1,"c":1,"b":1})") << Obj(R"({"d":1,"c":2,"a":1,"z":1})") << "b[4] a[8] d[8] c[1]" << true;
    QTest::newRow("members with different ids are not compared")
        << Obj(R"({"m":{"id":"x","a":1}})") << Obj(R"({"m":{"id":"y","a":2}})") << "" << false;
    QTest::newRow("an id on one side only also stops the comparison")
        << Obj(R"({"m":{"id":"x","a":1}})") << Obj(R"({"m":{"a":2}})") << "" << false;
    QTest::newRow("nested change is marked 1, not 16")
        << Obj(R"({"a":{"b":"x"}})") << Obj(R"({"a":{"b":"y"}})") << "a[1](b[1])" << true;
    QTest::newRow("array objects matched by id")
        << Obj(R"({"s":[{"id":"a","v":1},{"id":"b"}]})") << Obj(R"({"s":[{"id":"a","v":2},{"id":"c"}]})")
        << "s[1](a[2](v[1]) b[6] c[10])" << true;
    QTest::newRow("scalar order does not count")
        << Obj(R"({"s":["x","y"]})") << Obj(R"({"s":["y","z"]})") << "s[1](x[4] z[8])" << true;
    QTest::newRow("non-string scalars get empty keys")
        << Obj(R"({"s":[1,true,null,"x",[1]]})") << Obj(R"({"s":[]})") << "s[1]([4] [4] [4] x[4] [4])" << true;
    QTest::newRow("number id and string id differ")
        << Obj(R"({"s":[{"id":5,"v":1}]})") << Obj(R"({"s":[{"id":"5","v":1}]})") << "s[1]([6] 5[10])" << true;
    QTest::newRow("id-less object pairs with a scalar")
        << Obj(R"({"s":[{"a":1}]})") << Obj(R"({"s":[3,{"a":2}]})") << "s[1]([2](a[4]) [6] [8])" << true;
    QTest::newRow("equal partner passed over, next one compared")
        << Obj(R"({"s":[{"id":"a","v":1}]})") << Obj(R"({"s":[{"id":"a","v":1},{"id":"a","v":2}]})")
        << "s[1](a[2](v[1]))" << true;
    QTest::newRow("walk stops at the first differing partner")
        << Obj(R"({"s":[{"id":"a","v":1}]})") << Obj(R"({"s":[{"id":"a","v":2},{"id":"a","v":1}]})")
        << "s[1](a[2](v[1]))" << true;
    QTest::newRow("repeated equal partners")
        << Obj(R"({"s":[{"id":"a","v":1},{"id":"a","v":1}]})") << Obj(R"({"s":[{"id":"a","v":1}]})") << ""
        << false;
    QTest::newRow("array against a string")
        << Obj(R"({"s":["x"]})") << Obj(R"({"s":"x"})") << "s[1](x[4])" << true;
    QTest::newRow("object against a number") << Obj(R"({"a":{"b":1}})") << Obj(R"({"a":1})") << "a[1](b[4])"
                                             << true;
    QTest::newRow("number against an object") << Obj(R"({"a":1})") << Obj(R"({"a":{"b":1}})") << "a[1]" << true;
}

void DiffEngineTest::buildDiff()
{
    QFETCH(QJsonObject, left);
    QFETCH(QJsonObject, right);
    QFETCH(QString, shape);
    QFETCH(bool, result);

    VantixFeaturesDiffModel model;
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QVERIFY(reset.isValid());
    QCOMPARE(model.Regenerate(left, right), result);
    QCOMPARE(reset.count(), 1);
    QCOMPARE(DiffTreeDump::Shape(model.GetRoot()), shape);
    QCOMPARE(model.GetRoot()->key(), QStringLiteral("root"));
    QCOMPARE(model.GetRoot()->type(), QJsonValue::Object);
    QCOMPARE(model.GetRoot()->diffType(), 0);
}

void DiffEngineTest::nodeFields()
{
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"a":1,"n":{"b":"x"},"s":[{"id":"k","v":true},"q"]})"),
                     Obj(R"({"a":2,"n":{"b":"y"},"s":[{"id":"k","v":false}]})"));
    const QStringList expected = {
        "root type=5 diff=0 action=1 value= left=[null] right=[null]",
        " a type=2 diff=1 action=1 value= left=[1] right=[2]",
        " n type=5 diff=1 action=1 value= left=[null] right=[null]",
        "  b type=3 diff=1 action=1 value= left=[\"x\"] right=[\"y\"]",
        " s type=4 diff=1 action=1 value= left=[null] right=[null]",
        "  k type=5 diff=2 action=1 value= left=[null] right=[null]",
        "   v type=1 diff=1 action=1 value= left=[true] right=[false]",
        "  q type=3 diff=4 action=1 value= left=[\"q\"] right=[null]",
    };
    QCOMPARE(DiffTreeDump::Full(model.GetRoot()), expected);
}

void DiffEngineTest::indexedMatchesQuadratic_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<quint32>("seed");
    const char *families[] = {"near copies", "unrelated documents", "near copies swapped", "deep near copies"};
    for (int family = 0; family < 4; ++family) {
        for (quint32 seed = 1; seed <= 6; ++seed)
            QTest::addRow("%s, seed %u", families[family], seed) << family << seed * 7919u + quint32(family);
    }
}

void DiffEngineTest::indexedMatchesQuadratic()
{
    QFETCH(int, family);
    QFETCH(quint32, seed);
    RandomJson random(seed);
    for (int round = 0; round < 150; ++round) {
        const int depth = family == 3 ? 6 : 4;
        QJsonObject left = random.Object(depth);
        QJsonObject right = family == 1 ? random.Object(depth) : random.Mutate(left, depth).toObject();
        if (family == 2)
            std::swap(left, right);

        VantixFeaturesDiffModel model;
        const bool result = model.Regenerate(left, right);
        bool expectedResult = false;
        const auto reference = ReferenceTree(left, right, &expectedResult);
        QCOMPARE(result, expectedResult);
        QCOMPARE(DiffTreeDump::Full(model.GetRoot()), DiffTreeDump::Full(reference.get()));

        ChooseSides(model, QModelIndex(), reference.get(), random);
        QCOMPARE(DiffTreeDump::Full(model.GetRoot()), DiffTreeDump::Full(reference.get()));
        const QJsonObject third = random.Mutate(right, depth).toObject();
        for (const QJsonObject &target : {left, right, third}) {
            QJsonObject patched = target;
            model.ApplyPatch(patched);
            QCOMPARE(Compact(patched), Compact(QuadraticDiff::GenPatch(reference.get(), QJsonValue(target)).toObject()));
        }
    }
}

void DiffEngineTest::allLeftPatchIsIdentity()
{
    RandomJson random(20240601u);
    for (int round = 0; round < 300; ++round) {
        const QJsonObject left = random.WellFormedObject(5, false);
        const QJsonObject right = random.Mutate(left, 5).toObject();
        VantixFeaturesDiffModel model;
        model.Regenerate(left, right);
        QJsonObject patched = left;
        model.ApplyPatch(patched);
        QCOMPARE(Compact(patched), Compact(left));
    }
}

void DiffEngineTest::patchChoices_data()
{
    QTest::addColumn<QJsonObject>("left");
    QTest::addColumn<QJsonObject>("right");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("column");
    QTest::addColumn<QJsonObject>("expected");

    const QJsonObject objectsLeft = Obj(R"({"s":[{"id":"a","v":1},{"id":"b"}]})");
    const QJsonObject objectsRight = Obj(R"({"s":[{"id":"a","v":2},{"id":"c"}]})");
    QTest::newRow("right-only element taken: appended")
        << objectsLeft << objectsRight << "s/c" << 2 << Obj(R"({"s":[{"id":"a","v":1},{"id":"b"},{"id":"c"}]})");
    QTest::newRow("left-only element given up: dropped")
        << objectsLeft << objectsRight << "s/b" << 2 << Obj(R"({"s":[{"id":"a","v":1}]})");
    QTest::newRow("left-only element kept") << objectsLeft << objectsRight << "s/b" << 1 << objectsLeft;
    QTest::newRow("nested member of a matched element")
        << objectsLeft << objectsRight << "s/a/v" << 2 << Obj(R"({"s":[{"id":"a","v":2},{"id":"b"}]})");

    const QJsonObject stringsLeft = Obj(R"({"s":["x","y"]})");
    const QJsonObject stringsRight = Obj(R"({"s":["y","z"]})");
    QTest::newRow("left-only string given up") << stringsLeft << stringsRight << "s/x" << 2 << Obj(R"({"s":["y"]})");
    QTest::newRow("right-only string taken")
        << stringsLeft << stringsRight << "s/z" << 2 << Obj(R"({"s":["x","y","z"]})");

    QTest::newRow("changed member takes the right value")
        << Obj(R"({"a":1,"b":"k"})") << Obj(R"({"a":2,"b":"k"})") << "a" << 2 << Obj(R"({"a":2,"b":"k"})");
    QTest::newRow("changed nested member takes the right value")
        << Obj(R"({"n":{"b":"x","c":1}})") << Obj(R"({"n":{"b":"y","c":1}})") << "n/b" << 2
        << Obj(R"({"n":{"b":"y","c":1}})");
    QTest::newRow("right-only member taken: never added")
        << Obj(R"({"a":1})") << Obj(R"({"a":1,"b":2})") << "b" << 2 << Obj(R"({"a":1})");
    QTest::newRow("left-only member given up: never removed")
        << Obj(R"({"a":1,"b":2})") << Obj(R"({"a":1})") << "b" << 2 << Obj(R"({"a":1,"b":2})");
    QTest::newRow("left-only number matches no child: appended again")
        << Obj(R"({"s":[1]})") << Obj(R"({"s":[]})") << "s" << 1 << Obj(R"({"s":[1,1]})");
    QTest::newRow("elements of the same id follow the first node")
        << Obj(R"({"s":[{"id":"a","v":1},{"id":"a","v":3}]})") << Obj(R"({"s":[{"id":"a","v":2}]})") << "s/a/v"
        << 2 << Obj(R"({"s":[{"id":"a","v":2},{"id":"a","v":2}]})");
}

void DiffEngineTest::patchChoices()
{
    QFETCH(QJsonObject, left);
    QFETCH(QJsonObject, right);
    QFETCH(QString, path);
    QFETCH(int, column);
    QFETCH(QJsonObject, expected);

    VantixFeaturesDiffModel model;
    QVERIFY(model.Regenerate(left, right));
    const QModelIndex node = Find(model, path);
    QVERIFY(node.isValid());
    QVERIFY(model.setData(node.siblingAtColumn(column), Qt::Checked, Qt::CheckStateRole));
    const QStringList treeBefore = DiffTreeDump::Full(model.GetRoot());
    QJsonObject patched = left;
    model.ApplyPatch(patched);
    QCOMPARE(Compact(patched), Compact(expected));
    QCOMPARE(DiffTreeDump::Full(model.GetRoot()), treeBefore);
}

void DiffEngineTest::patchBeforeRegenerate()
{
    VantixFeaturesDiffModel model;
    QVERIFY(!model.GetRoot());
    QCOMPARE(model.rowCount(), 0);
    QJsonObject target = Obj(R"({"a":[1,{"id":"x"}]})");
    model.ApplyPatch(target);
    QCOMPARE(Compact(target), Compact(Obj(R"({"a":[1,{"id":"x"}]})")));
}

void DiffEngineTest::hostileInput_data()
{
    QTest::addColumn<QJsonObject>("left");
    QTest::addColumn<QJsonObject>("right");
    QTest::addColumn<QString>("shape");

    QJsonArray equalObjects;
    QJsonArray equalStrings;
    QJsonArray idlessObjects;
    for (int i = 0; i < 100000; ++i) {
        equalObjects.append(QJsonObject{{"id", "same"}, {"v", 1}});
        equalStrings.append(QStringLiteral("same"));
        idlessObjects.append(QJsonObject{{"v", 1}});
    }
    QJsonArray equalObjectsThenOther = equalObjects;
    equalObjectsThenOther.append(QJsonObject{{"id", "same"}, {"v", 2}});
    QJsonArray withNew = equalStrings;
    withNew.append(QStringLiteral("new"));
    QJsonArray idlessThenNumber = idlessObjects;
    idlessThenNumber.append(7);
    // Every id-less object passes over its equal partners and stops at the number, which
    // stands for an empty object: a changed node and a left-only node each.
    const QString idlessShape = QStringList(QVector<QString>(100000, "[2](v[4]) [6]").toList()).join(' ');

    QTest::newRow("100000 equal objects, one differing partner at the end")
        << QJsonObject{{"s", equalObjects}} << QJsonObject{{"s", equalObjectsThenOther}}
        << "s[1](" + QStringList(QVector<QString>(100000, "same[2](v[1])").toList()).join(' ') + ")";
    QTest::newRow("100000 equal strings, one new")
        << QJsonObject{{"s", equalStrings}} << QJsonObject{{"s", withNew}} << "s[1](new[8])";
    QTest::newRow("100000 id-less objects, a number on the right")
        << QJsonObject{{"s", idlessObjects}} << QJsonObject{{"s", idlessThenNumber}}
        << "s[1](" + idlessShape + " [8])";
}

void DiffEngineTest::hostileInput()
{
    QFETCH(QJsonObject, left);
    QFETCH(QJsonObject, right);
    QFETCH(QString, shape);

    VantixFeaturesDiffModel model;
    QVERIFY(model.Regenerate(left, right));
    QCOMPARE(DiffTreeDump::Shape(model.GetRoot()), shape);
    QJsonObject patched = left;
    model.ApplyPatch(patched);
    QCOMPARE(patched, left);
}

void DiffEngineTest::deepNestingOnPoolThread()
{
    // The parser's own nesting limit; the editor builds diffs on a pool thread.
    const QJsonObject left = QJsonDocument::fromJson(DeepObject(1023, "1").toUtf8()).object();
    const QJsonObject right = QJsonDocument::fromJson(DeepObject(1023, "2").toUtf8()).object();
    QVERIFY(!left.isEmpty());
    QVERIFY(!right.isEmpty());

    VantixFeaturesDiffModel model;
    QFuture<bool> future = QtConcurrent::run([&] { return model.Regenerate(left, right); });
    QVERIFY(future.result());
    int depth = 0;
    for (const QJsonTreeItem *node = model.GetRoot(); node->childCount() > 0; node = node->child(0))
        ++depth;
    QCOMPARE(depth, 1023);
    QModelIndex innermost = Find(model, QStringList(QVector<QString>(1023, "a").toList()).join('/'));
    QVERIFY(innermost.isValid());
    QVERIFY(model.setData(innermost.siblingAtColumn(2), Qt::Checked, Qt::CheckStateRole));
    QJsonObject patched = left;
    QtConcurrent::run([&] { model.ApplyPatch(patched); }).waitForFinished();
    QCOMPARE(patched, right);
}

void DiffEngineTest::headers()
{
    VantixFeaturesDiffModel model;
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Key"));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Current/Left"));
    QCOMPARE(model.headerData(2, Qt::Horizontal).toString(), QStringLiteral("Original/Right"));
    QCOMPARE(model.headerData(3, Qt::Horizontal), QVariant(QString()));
    QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());

    model.setHeaders({"Key", "p1"});
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("p1"));
    QCOMPARE(model.headerData(2, Qt::Horizontal), QVariant(QString()));
}

void DiffEngineTest::sidesAndCheckStates_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QVariant>("leftText");
    QTest::addColumn<QVariant>("rightText");
    QTest::addColumn<QVariant>("leftCheck");
    QTest::addColumn<QVariant>("rightCheck");

    const QVariant checked(static_cast<int>(Qt::Checked));
    const QVariant unchecked(static_cast<int>(Qt::Unchecked));
    QTest::newRow("left-only member") << "l" << QVariant("Yes") << QVariant("No") << checked << unchecked;
    QTest::newRow("right-only member") << "r" << QVariant("No") << QVariant("Yes") << checked << unchecked;
    QTest::newRow("left-only element (6)") << "s/b" << QVariant("Yes") << QVariant("No") << checked << unchecked;
    QTest::newRow("right-only element (10)") << "s/c" << QVariant("No") << QVariant("Yes") << checked << unchecked;
    QTest::newRow("changed member (1): no sides, no box")
        << "a" << QVariant(QString()) << QVariant() << QVariant() << QVariant();
    QTest::newRow("matched element (2): no sides, no box")
        << "s/a" << QVariant(QString()) << QVariant() << QVariant() << QVariant();
}

void DiffEngineTest::sidesAndCheckStates()
{
    QFETCH(QString, path);
    QFETCH(QVariant, leftText);
    QFETCH(QVariant, rightText);
    QFETCH(QVariant, leftCheck);
    QFETCH(QVariant, rightCheck);

    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"a":1,"l":true,"s":[{"id":"a","v":1},{"id":"b"}]})"),
                     Obj(R"({"a":2,"r":"x","s":[{"id":"a","v":2},{"id":"c"}]})"));
    const QModelIndex node = Find(model, path);
    QVERIFY(node.isValid());
    QCOMPARE(node.siblingAtColumn(1).data(), leftText);
    QCOMPARE(node.siblingAtColumn(2).data(), rightText);
    QCOMPARE(node.siblingAtColumn(1).data(Qt::CheckStateRole), leftCheck);
    QCOMPARE(node.siblingAtColumn(2).data(Qt::CheckStateRole), rightCheck);
    QVERIFY(!node.data(Qt::CheckStateRole).isValid());
}

void DiffEngineTest::tickingOtherSide()
{
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"a":1,"l":true})"), Obj(R"({"a":1})"));
    const QModelIndex left = Find(model, "l").siblingAtColumn(1);
    const QModelIndex right = left.siblingAtColumn(2);

    QVERIFY(model.setData(right, Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(left.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QCOMPARE(right.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    // A side cannot be unticked, only the other side ticked.
    QVERIFY(model.setData(right, Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(right.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QVERIFY(model.setData(left, Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(left.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(right.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));

    QVERIFY(!model.setData(right, Qt::Checked, Qt::EditRole));
    QVERIFY(!model.setData(QModelIndex(), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(left.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
}

void DiffEngineTest::notificationNamesTopLevelRow()
{
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"a":0,"b":0,"n":{"x":1,"y":1,"z":1}})"), Obj(R"({"a":1,"b":1,"n":{"z":2}})"));
    QSignalSpy spy(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(spy.isValid());

    // "n/y" is row 1 of "n" (x and y are left-only, z changed); the notification names top-level row 1.
    const QModelIndex nested = Find(model, "n/y");
    QCOMPARE(nested.row(), 1);
    QVERIFY(model.setData(nested.siblingAtColumn(2), true, Qt::CheckStateRole));
    QCOMPARE(spy.count(), 1);
    const QList<QVariant> arguments = spy.takeFirst();
    const auto topLeft = arguments.at(0).value<QModelIndex>();
    const auto bottomRight = arguments.at(1).value<QModelIndex>();
    QCOMPARE(topLeft, model.index(1, 0));
    QCOMPARE(topLeft.data().toString(), QStringLiteral("b"));
    // (row, columnCount) lies past the last column, so the model answers an invalid index.
    QCOMPARE(bottomRight, model.index(1, 3));
    QVERIFY(!bottomRight.isValid());
    QCOMPARE(arguments.at(2).value<QVector<int>>(), QVector<int>{Qt::CheckStateRole});
}

void DiffEngineTest::readOnlyMode()
{
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"l":1})"), Obj(R"({})"));
    model.setEditableMode(false);
    const QModelIndex node = Find(model, "l");
    QVERIFY(!node.siblingAtColumn(1).data(Qt::CheckStateRole).isValid());
    QVERIFY(!node.siblingAtColumn(2).data(Qt::CheckStateRole).isValid());
    QCOMPARE(node.siblingAtColumn(1).data().toString(), QStringLiteral("Yes"));
    QCOMPARE(int(model.flags(node.siblingAtColumn(1))), 51);
    model.setEditableMode(true);
    QCOMPARE(node.siblingAtColumn(1).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
}

void DiffEngineTest::flags()
{
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"a":1,"l":1})"), Obj(R"({"a":2})"));
    const QModelIndex changed = Find(model, "a");
    const QModelIndex leftOnly = Find(model, "l");
    QCOMPARE(int(model.flags(QModelIndex())), 0);
    QCOMPARE(int(model.flags(leftOnly)), 33);
    QCOMPARE(int(model.flags(leftOnly.siblingAtColumn(1))), 51);
    QCOMPARE(int(model.flags(leftOnly.siblingAtColumn(2))), 51);
    QCOMPARE(int(model.flags(changed.siblingAtColumn(1))), 33);
    QCOMPARE(int(model.flags(changed.siblingAtColumn(2))), 33);
}

void DiffEngineTest::navigation()
{
    VantixFeaturesDiffModel model;
    // The tester watches resets and navigation; setData's notification is left out (see
    // notificationNamesTopLevelRow), since its last index lies past the last column.
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    RandomJson random(77u);
    for (int round = 0; round < 20; ++round) {
        const QJsonObject left = random.Object(4);
        model.Regenerate(left, random.Mutate(left, 4).toObject());
    }
    model.Regenerate(Obj(R"({"n":{"x":1}})"), Obj(R"({"n":{"x":2}})"));
    const QModelIndex x = Find(model, "n/x");
    QCOMPARE(model.parent(x), Find(model, "n"));
    QCOMPARE(model.rowCount(Find(model, "n").siblingAtColumn(1)), 0);
    QCOMPARE(model.index(0, 0, x), QModelIndex());
}

QTEST_GUILESS_MAIN(DiffEngineTest)
#include "DiffEngineTest.moc"
