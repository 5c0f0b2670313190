#include "QuadraticDiff.h"
#include "RandomJson.h"

#include "json/QJsonDiffTreeItem.h"
#include "json/VantixFeaturesDiffModel.h"

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>
#include <QtConcurrent>

using namespace ProductEditor;

namespace {

QJsonObject Obj(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("bad test JSON: %s", json.constData());
    return document.object();
}

QString Compact(const QJsonValue &value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
}

// Every field of every node, one line per node, also checking the parent links.
QStringList Full(const QJsonTreeItem *treeNode, int depth = 0)
{
    const auto *node = static_cast<const QJsonDiffTreeItem *>(treeNode);
    QStringList lines;
    if (!node)
        return lines;
    lines << QString(depth, QLatin1Char(' ')) + node->key()
                 + QStringLiteral(" type=%1 diff=%2").arg(node->type()).arg(node->diffType())
                 + QStringLiteral(" action=%1").arg(node->action())
                 + QStringLiteral(" value=%1 left=%2 right=%3")
                       .arg(node->value(), Compact(node->values().left), Compact(node->values().right));
    for (int i = 0; i < node->childCount(); ++i) {
        if (node->child(i)->parent() != node || node->child(i)->row() != i)
            lines << QStringLiteral("broken link at %1").arg(i);
        lines << Full(node->child(i), depth + 1);
    }
    return lines;
}

// Keys and diff types only: `a[2](v[1]) b[6]`.
QString Shape(const QJsonTreeItem *node)
{
    QStringList parts;
    for (int i = 0; node && i < node->childCount(); ++i) {
        const auto *child = static_cast<const QJsonDiffTreeItem *>(node->child(i));
        parts << child->key() + QStringLiteral("[%1]").arg(child->diffType())
                     + (child->childCount() ? QLatin1Char('(') + Shape(child) + QLatin1Char(')') : QString());
    }
    return parts.join(QLatin1Char(' '));
}

// Follows a path of keys ("s/a/v") from the top level; each step takes the first row with that key.
QModelIndex Find(const QAbstractItemModel &model, const QString &path)
{
    QModelIndex current;
    for (const QString &key : path.split(QLatin1Char('/'))) {
        const QModelIndexList hits = model.rowCount(current) == 0
            ? QModelIndexList()
            : model.match(model.index(0, 0, current), Qt::DisplayRole, key, 1, Qt::MatchExactly);
        if (hits.isEmpty())
            return QModelIndex();
        current = hits.first();
    }
    return current;
}

// "text,check,flags" for the three cells of a row; "~" stands for an invalid variant.
QString Cells(const QModelIndex &node)
{
    QStringList cells;
    for (int column = 0; column < 3; ++column) {
        const QModelIndex cell = node.siblingAtColumn(column);
        const QVariant text = cell.data();
        const QVariant check = cell.data(Qt::CheckStateRole);
        cells << QStringLiteral("%1,%2,%3")
                     .arg(text.isValid() ? text.toString() : QStringLiteral("~"),
                          check.isValid() ? check.toString() : QStringLiteral("~"),
                          QString::number(int(cell.model()->flags(cell))));
    }
    return cells.join(QLatin1Char(' '));
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

QString Repeated(const QString &part, int count)
{
    return QStringList(QVector<QString>(count, part).toList()).join(QLatin1Char(' '));
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
    void patchChoices_data();
    void patchChoices();
    void deepNestingOnPoolThread();
    void cells_data();
    void cells();
    void sideColumnsAskTheirOwnFlagFirst();
    void tickingNotifiesTopLevelRow();
    void headersAndNavigation();
};

void DiffEngineTest::buildDiff_data()
{
    QTest::addColumn<QJsonObject>("left");
    QTest::addColumn<QJsonObject>("right");
    QTest::addColumn<QString>("shape"); // empty when Regenerate finds no difference
    const auto row = [](const char *name, const char *left, const char *right, const char *shape) {
        QTest::newRow(name) << Obj(left) << Obj(right) << QString(shape);
    };
    row("equal objects", R"({"a":1,"b":[1,{"id":"x"}]})", R"({"b":[1,{"id":"x"}],"a":1})", "");
    row("1 and 1.0 are equal", R"({"a":1})", R"({"a":1.0})", "");
    row("changed member", R"({"a":1})", R"({"a":2})", "a[1]");
    row("runs: left-only, right-only, changed", R"({"z":1,"c":1,"b":1})", R"({"d":1,"c":2,"a":1,"z":1})",
        "b[4] a[8] d[8] c[1]");
    row("members with different ids are not compared", R"({"m":{"id":"x","a":1}})", R"({"m":{"id":"y","a":2}})", "");
    row("an id on one side only also stops the comparison", R"({"m":{"id":"x","a":1}})", R"({"m":{"a":2}})", "");
    row("nested change is marked 1, not 16", R"({"a":{"b":"x"}})", R"({"a":{"b":"y"}})", "a[1](b[1])");
    row("array objects matched by id", R"({"s":[{"id":"a","v":1},{"id":"b"}]})",
        R"({"s":[{"id":"a","v":2},{"id":"c"}]})", "s[1](a[2](v[1]) b[6] c[10])");
    row("scalar order does not count", R"({"s":["x","y"]})", R"({"s":["y","z"]})", "s[1](x[4] z[8])");
    row("non-string scalars get empty keys", R"({"s":[1,true,null,"x",[1]]})", R"({"s":[]})",
        "s[1]([4] [4] [4] x[4] [4])");
    row("number id and string id differ", R"({"s":[{"id":5,"v":1}]})", R"({"s":[{"id":"5","v":1}]})",
        "s[1]([6] 5[10])");
    row("id-less object pairs with a scalar", R"({"s":[{"a":1}]})", R"({"s":[3,{"a":2}]})", "s[1]([2](a[4]) [6] [8])");
    row("equal partner passed over, next one compared", R"({"s":[{"id":"a","v":1}]})",
        R"({"s":[{"id":"a","v":1},{"id":"a","v":2}]})", "s[1](a[2](v[1]))");
    row("walk stops at the first differing partner", R"({"s":[{"id":"a","v":1}]})",
        R"({"s":[{"id":"a","v":2},{"id":"a","v":1}]})", "s[1](a[2](v[1]))");
    row("repeated equal partners", R"({"s":[{"id":"a","v":1},{"id":"a","v":1}]})", R"({"s":[{"id":"a","v":1}]})", "");
    row("array against a string", R"({"s":["x"]})", R"({"s":"x"})", "s[1](x[4])");
    row("object against a number", R"({"a":{"b":1}})", R"({"a":1})", "a[1](b[4])");
    row("number against an object", R"({"a":1})", R"({"a":{"b":1}})", "a[1]");

    // Sizes at which walking the other array for every element would never finish.
    const int n = 100000;
    // n copies of `element` under "s", then `tail` unless it is undefined.
    const auto array = [n](const QJsonValue &element, const QJsonValue &tail = QJsonValue::Undefined) {
        QJsonArray array;
        for (int i = 0; i < n; ++i)
            array.append(element);
        if (!tail.isUndefined())
            array.append(tail);
        return QJsonObject{{QStringLiteral("s"), array}};
    };
    const QJsonObject same{{"id", "same"}, {"v", 1}};
    QTest::newRow("100000 equal objects, one differing partner at the end")
        << array(same) << array(same, QJsonObject{{"id", "same"}, {"v", 2}})
        << "s[1](" + Repeated("same[2](v[1])", n) + ")";
    QTest::newRow("100000 equal strings, one new") << array("same") << array("same", "new") << "s[1](new[8])";
    // Every id-less object passes over its equal partners and stops at the number, which
    // stands for an empty object: a changed node and a left-only node each.
    QTest::newRow("100000 id-less objects, a number on the right")
        << array(QJsonObject{{"v", 1}}) << array(QJsonObject{{"v", 1}}, 7)
        << "s[1](" + Repeated("[2](v[4]) [6]", n) + " [8])";
}

void DiffEngineTest::buildDiff()
{
    QFETCH(QJsonObject, left);
    QFETCH(QJsonObject, right);
    QFETCH(QString, shape);
    VantixFeaturesDiffModel model;
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QVERIFY(reset.isValid());
    QCOMPARE(model.Regenerate(left, right), !shape.isEmpty());
    QCOMPARE(reset.count(), 1);
    QCOMPARE(Shape(model.GetRoot()), shape);
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
    QCOMPARE(Full(model.GetRoot()), expected);
}

void DiffEngineTest::indexedMatchesQuadratic_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<quint32>("seed");
    const char *families[] = {"near copies", "unrelated documents", "near copies swapped", "deep near copies",
                              "well-formed near copies"};
    for (int family = 0; family < 5; ++family) {
        for (quint32 seed = 1; seed <= 6; ++seed)
            QTest::addRow("%s, seed %u", families[family], seed) << family << seed * 7919u + quint32(family);
    }
}

void DiffEngineTest::indexedMatchesQuadratic()
{
    QFETCH(int, family);
    QFETCH(quint32, seed);
    RandomJson random(seed);
    const int depth = family >= 3 ? 5 + (family == 3) : 4;
    for (int round = 0; round < 150; ++round) {
        QJsonObject left = family == 4 ? random.WellFormedObject(depth, false) : random.Object(depth);
        QJsonObject right = family == 1 ? random.Object(depth) : random.Mutate(left, depth).toObject();
        if (family == 2)
            std::swap(left, right);

        VantixFeaturesDiffModel model;
        QJsonDiffTreeItem reference(nullptr); // made as Regenerate makes its root
        reference.setKey(QStringLiteral("root"));
        reference.setType(QJsonValue::Object);
        QCOMPARE(model.Regenerate(left, right), QuadraticDiff::BuildDiff(left, right, &reference));
        QCOMPARE(Full(model.GetRoot()), Full(&reference));
        if (family == 4) { // ids unique and non-empty, scalars distinct: keeping every left side is the identity
            QJsonObject patched = left;
            model.ApplyPatch(patched);
            QCOMPARE(Compact(patched), Compact(left));
        }

        ChooseSides(model, QModelIndex(), &reference, random);
        QCOMPARE(Full(model.GetRoot()), Full(&reference));
        for (const QJsonObject &target : {left, right, random.Mutate(right, depth).toObject()}) {
            QJsonObject patched = target;
            model.ApplyPatch(patched);
            QCOMPARE(Compact(patched), Compact(QuadraticDiff::GenPatch(&reference, target)));
        }
    }
}

void DiffEngineTest::patchChoices_data()
{
    QTest::addColumn<QJsonObject>("left");
    QTest::addColumn<QJsonObject>("right");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("column");
    QTest::addColumn<QJsonObject>("expected");
    const auto row = [](const char *name, const char *left, const char *right, const char *path, int column,
                        const char *expected) {
        QTest::newRow(name) << Obj(left) << Obj(right) << QString(path) << column << Obj(expected);
    };
    const char *objects = R"({"s":[{"id":"a","v":1},{"id":"b"}]})";
    const char *otherObjects = R"({"s":[{"id":"a","v":2},{"id":"c"}]})";
    row("right-only element taken: appended", objects, otherObjects, "s/c", 2,
        R"({"s":[{"id":"a","v":1},{"id":"b"},{"id":"c"}]})");
    row("left-only element given up: dropped", objects, otherObjects, "s/b", 2, R"({"s":[{"id":"a","v":1}]})");
    row("left-only element kept", objects, otherObjects, "s/b", 1, objects);
    row("nested member of a matched element", objects, otherObjects, "s/a/v", 2,
        R"({"s":[{"id":"a","v":2},{"id":"b"}]})");
    row("left-only string given up", R"({"s":["x","y"]})", R"({"s":["y","z"]})", "s/x", 2, R"({"s":["y"]})");
    row("right-only string taken", R"({"s":["x","y"]})", R"({"s":["y","z"]})", "s/z", 2, R"({"s":["x","y","z"]})");
    row("changed member takes the right value", R"({"a":1,"b":"k"})", R"({"a":2,"b":"k"})", "a", 2,
        R"({"a":2,"b":"k"})");
    row("changed nested member takes the right value", R"({"n":{"b":"x","c":1}})", R"({"n":{"b":"y","c":1}})", "n/b",
        2, R"({"n":{"b":"y","c":1}})");
    row("right-only member taken: never added", R"({"a":1})", R"({"a":1,"b":2})", "b", 2, R"({"a":1})");
    row("left-only member given up: never removed", R"({"a":1,"b":2})", R"({"a":1})", "b", 2, R"({"a":1,"b":2})");
    row("left-only number matches no child: appended again", R"({"s":[1]})", R"({"s":[]})", "s", 1, R"({"s":[1,1]})");
    row("elements of the same id follow the first node", R"({"s":[{"id":"a","v":1},{"id":"a","v":3}]})",
        R"({"s":[{"id":"a","v":2}]})", "s/a/v", 2, R"({"s":[{"id":"a","v":2},{"id":"a","v":2}]})");
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
    QVERIFY(model.setData(Find(model, path).siblingAtColumn(column), Qt::Checked, Qt::CheckStateRole));
    const QStringList treeBefore = Full(model.GetRoot());
    model.ApplyPatch(left);
    QCOMPARE(Compact(left), Compact(expected));
    QCOMPARE(Full(model.GetRoot()), treeBefore);
}

void DiffEngineTest::deepNestingOnPoolThread()
{
    // The parser's own nesting limit; the editor builds diffs on a pool thread.
    const QByteArray open = QByteArray("{\"a\":").repeated(1023);
    const QJsonObject left = Obj(open + "1" + QByteArray(1023, '}'));
    const QJsonObject right = Obj(open + "2" + QByteArray(1023, '}'));
    VantixFeaturesDiffModel model;
    QVERIFY(QtConcurrent::run([&] { return model.Regenerate(left, right); }).result());
    const QModelIndex innermost = Find(model, Repeated("a", 1023).replace(' ', '/'));
    QVERIFY(model.setData(innermost.siblingAtColumn(2), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(model.rowCount(innermost), 0);
    QJsonObject patched = left;
    QtConcurrent::run([&] { model.ApplyPatch(patched); }).waitForFinished();
    QCOMPARE(patched, right);
}

void DiffEngineTest::cells_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("editable");
    QTest::addColumn<QString>("cells");
    QTest::newRow("left-only member") << "l" << true << "l,~,33 Yes,2,51 No,0,51";
    QTest::newRow("right-only member") << "r" << true << "r,~,33 No,2,51 Yes,0,51";
    QTest::newRow("left-only element (6)") << "s/b" << true << "b,~,33 Yes,2,51 No,0,51";
    QTest::newRow("right-only element (10)") << "s/c" << true << "c,~,33 No,2,51 Yes,0,51";
    QTest::newRow("changed member (1): no sides, no box") << "a" << true << "a,~,33 ,~,33 ~,~,33";
    QTest::newRow("matched element (2): no sides, no box") << "s/a" << true << "a,~,33 ,~,33 ~,~,33";
    QTest::newRow("read-only: no boxes, still checkable") << "l" << false << "l,~,33 Yes,~,51 No,~,51";
}

void DiffEngineTest::cells()
{
    QFETCH(QString, path);
    QFETCH(bool, editable);
    QFETCH(QString, cells);
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"a":1,"l":true,"s":[{"id":"a","v":1},{"id":"b"}]})"),
                     Obj(R"({"a":2,"r":"x","s":[{"id":"a","v":2},{"id":"c"}]})"));
    model.setEditableMode(editable);
    QCOMPARE(Cells(Find(model, path)), cells);
}

void DiffEngineTest::sideColumnsAskTheirOwnFlagFirst()
{
    // The engine never sets both one-side flags; the model still answers per column.
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"l":1})"), Obj("{}"));
    QJsonTreeItem *node = model.GetRoot()->child(0);
    static_cast<QJsonDiffTreeItem *>(node)->setDiffType(QJsonDiffTreeItem::LeftOnly | QJsonDiffTreeItem::RightOnly);
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("Yes"));
    QCOMPARE(model.index(0, 2).data().toString(), QStringLiteral("Yes"));
}

void DiffEngineTest::tickingNotifiesTopLevelRow()
{
    VantixFeaturesDiffModel model;
    model.Regenerate(Obj(R"({"a":0,"b":0,"n":{"x":1,"y":1,"z":1}})"), Obj(R"({"a":1,"b":1,"n":{"z":2}})"));
    QSignalSpy spy(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(spy.isValid());
    // "n/y" is row 1 of "n" (x and y are left-only, z changed); the notification names
    // top-level row 1, and its (row, columnCount) end lies past the last column.
    const QModelIndex nested = Find(model, "n/y");
    QVERIFY(model.setData(nested.siblingAtColumn(2), true, Qt::CheckStateRole));
    QCOMPARE(spy.count(), 1);
    const QList<QVariant> arguments = spy.takeFirst();
    QCOMPARE(arguments.at(0).value<QModelIndex>(), model.index(1, 0));
    QCOMPARE(arguments.at(0).value<QModelIndex>().data().toString(), QStringLiteral("b"));
    QVERIFY(!arguments.at(1).value<QModelIndex>().isValid());
    QCOMPARE(arguments.at(2).value<QVector<int>>(), QVector<int>{Qt::CheckStateRole});
    QCOMPARE(Cells(nested), QStringLiteral("y,~,33 Yes,0,51 No,2,51"));

    // A side cannot be unticked, only the other side ticked.
    QVERIFY(model.setData(nested.siblingAtColumn(2), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(Cells(nested), QStringLiteral("y,~,33 Yes,0,51 No,2,51"));
    QVERIFY(model.setData(nested.siblingAtColumn(1), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(!model.setData(nested.siblingAtColumn(2), Qt::Checked, Qt::EditRole));
    QVERIFY(!model.setData(QModelIndex(), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(Cells(nested), QStringLiteral("y,~,33 Yes,2,51 No,0,51"));
    QCOMPARE(spy.count(), 2);
}

void DiffEngineTest::headersAndNavigation()
{
    VantixFeaturesDiffModel model;
    // The tester watches resets and navigation; setData's notification is left out (see
    // tickingNotifiesTopLevelRow), since its last index lies past the last column.
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QStringList headers;
    for (int section = 0; section < 4; ++section)
        headers << model.headerData(section, Qt::Horizontal).toString();
    QCOMPARE(headers, QStringList({"Key", "Current/Left", "Original/Right", ""}));
    QCOMPARE(model.headerData(3, Qt::Horizontal), QVariant(QString()));
    QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
    model.setHeaders({"Key", "p1"});
    QCOMPARE(model.headerData(1, Qt::Horizontal), QVariant(QStringLiteral("p1")));
    QCOMPARE(model.headerData(2, Qt::Horizontal), QVariant(QString()));

    QVERIFY(!model.GetRoot()); // no tree yet: nothing to show, a patch changes nothing
    QCOMPARE(model.rowCount(), 0);
    QJsonObject target = Obj(R"({"a":[1,{"id":"x"}]})");
    model.ApplyPatch(target);
    QCOMPARE(Compact(target), Compact(Obj(R"({"a":[1,{"id":"x"}]})")));

    RandomJson random(77u);
    for (int round = 0; round < 20; ++round) {
        const QJsonObject left = random.Object(4);
        model.Regenerate(left, random.Mutate(left, 4).toObject());
    }
    model.Regenerate(Obj(R"({"n":{"x":1}})"), Obj(R"({"n":{"x":2}})"));
    const QModelIndex x = Find(model, "n/x");
    QCOMPARE(model.parent(x), Find(model, "n"));
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.rowCount(Find(model, "n").siblingAtColumn(1)), 0);
    QCOMPARE(model.index(0, 0, x), QModelIndex());
    QCOMPARE(int(model.flags(QModelIndex())), 0);
}

QTEST_GUILESS_MAIN(DiffEngineTest)
#include "DiffEngineTest.moc"
