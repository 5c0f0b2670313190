#include "TestHelpers.h"
#include "QuadraticDiff.h"
#include "RandomJson.h"

#include "diff/JsonDiff.h"
#include "diff/VantixFeaturesDiffModel.h"

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>
#include <QtConcurrent>

using namespace ProductEditor;

namespace {

// Every field of every node, one line per node, also checking the parent links.
QStringList Full(const QJsonTreeItem *treeNode, int depth = 0)
{
    const auto *node = static_cast<const QJsonDiffTreeItem *>(treeNode);
    QStringList lines{QStringLiteral("%1%2 type=%3 diff=%4 action=%5 value=%6 left=%7 right=%8")
                          .arg(QString(depth, QLatin1Char(' ')), node->key())
                          .arg(node->type()).arg(node->diffType()).arg(node->action())
                          .arg(node->value(), Compact(node->values().left), Compact(node->values().right))};
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
    for (const QString &key : path.split('/'))
        current = model.match(model.index(0, 0, current), Qt::DisplayRole, key, 1, Qt::MatchExactly).value(0);
    return current;
}

// "text,check,flags" for the three cells of a row; "~" stands for an invalid variant.
QString Cells(const QModelIndex &node)
{
    QStringList cells;
    for (const QModelIndex &cell : {node.siblingAtColumn(0), node.siblingAtColumn(1), node.siblingAtColumn(2)}) {
        const QVariant text = cell.data(), check = cell.data(Qt::CheckStateRole);
        cells << (text.isValid() ? text.toString() : "~") + ',' + (check.isValid() ? check.toString() : "~") + ','
                     + QString::number(cell.model()->flags(cell));
    }
    return cells.join(' ');
}

// Gives the nodes of two equal trees the same random sides.
void ChooseSides(QJsonTreeItem *tree, QJsonTreeItem *reference, RandomJson &random)
{
    for (int i = 0; i < tree->childCount(); ++i) {
        const DiffAction side = random.Chance(50) ? UseRight : UseLeft;
        static_cast<QJsonDiffTreeItem *>(tree->child(i))->setDiffAction(side);
        static_cast<QJsonDiffTreeItem *>(reference->child(i))->setDiffAction(side);
        ChooseSides(tree->child(i), reference->child(i), random);
    }
}

} // namespace

class DiffEngineTest : public QObject
{
    Q_OBJECT

private slots:
    void buildDiff_data()
    {
        QTest::addColumn<QJsonObject>("left");
        QTest::addColumn<QJsonObject>("right");
        QTest::addColumn<QString>("shape"); // empty when there is no difference
        const auto row = [](const char *name, const char *left, const char *right, const char *shape) {
            QTest::newRow(name) << Obj(left) << Obj(right) << QString(shape);
        };
        row("equal objects", R"({"a":1,"b":[1,{"id":"x"}]})", R"({"b":[1,{"id":"x"}],"a":1.0})", "");
        row("runs: left-only, right-only, changed", R"({"z":1,"c":1,"b":1})", R"({"d":1,"c":2,"a":1,"z":1})",
            "b[4] a[8] d[8] c[1]");
        row("members with different ids are not compared", R"({"m":{"id":"x","a":1}})", R"({"m":{"id":"y","a":2}})", "");
        row("nested change is marked 1, not 16", R"({"a":{"b":"x"}})", R"({"a":{"b":"y"}})", "a[1](b[1])");
        row("array objects matched by id", R"({"s":[{"id":"a","v":1},{"id":"b"}]})",
            R"({"s":[{"id":"a","v":2},{"id":"c"}]})", "s[1](a[2](v[1]) b[6] c[10])");
        row("scalar order does not count", R"({"s":["x","y"]})", R"({"s":["y","z"]})", "s[1](x[4] z[8])");
        row("number id and string id differ", R"({"s":[{"id":5}]})", R"({"s":[{"id":"5"}]})", "s[1]([6] 5[10])");
        row("id-less object pairs with a scalar", R"({"s":[{"a":1}]})", R"({"s":[3,{"a":2}]})", "s[1]([2](a[4]) [6] [8])");
        row("equal partner passed over, next one compared", R"({"s":[{"id":"a","v":1}]})",
            R"({"s":[{"id":"a","v":1},{"id":"a","v":2}]})", "s[1](a[2](v[1]))");

        // Sizes at which walking the other array for every element would never finish.
        // Every id-less object passes over its equal partners and stops at the number, which stands for an
        // empty object: a changed node and a left-only node each.
        QJsonArray array;
        for (int i = 0; i < 100000; ++i)
            array.append(QJsonObject{{"v", 1}});
        QTest::newRow("100000 id-less objects, a number on the right") << QJsonObject{{"s", array}}
            << QJsonObject{{"s", QJsonArray(array) << 7}}
            << "s[1](" + QStringList(QVector<QString>(100000, "[2](v[4]) [6]").toList()).join(' ') + " [8])";
    }

    void buildDiff()
    {
        QFETCH(QJsonObject, left);
        QFETCH(QJsonObject, right);
        QFETCH(QString, shape);
        QCOMPARE(Shape(DiffJson(left, right).get()), shape);
    }

    void matchesQuadraticReference_data()
    {
        QTest::addColumn<int>("family");
        QTest::addColumn<quint32>("seed");
        const char *families[] = {"near copies", "unrelated documents", "near copies swapped", "deep near copies"};
        for (int i = 0; i < 16; ++i)
            QTest::addRow("%s, seed %d", families[i % 4], i / 4) << i % 4 << quint32(i * 7919);
    }

    // The indexed engine must build the same trees and patches as the plain transcription.
    void matchesQuadraticReference()
    {
        QFETCH(int, family);
        QFETCH(quint32, seed);
        RandomJson random(seed);
        const int depth = family == 3 ? 6 : 4;
        for (int round = 0; round < 120; ++round) {
            QJsonObject left = random.Object(depth);
            QJsonObject right = family == 1 ? random.Object(depth) : random.Mutate(left, depth).toObject();
            if (family == 2)
                std::swap(left, right);

            const auto tree = NewDiffRoot();
            const auto reference = NewDiffRoot();
            const bool differs = BuildJsonDiff(left, right, tree.get());
            QCOMPARE(differs, QuadraticDiff::BuildDiff(left, right, reference.get()));
            QCOMPARE(Full(tree.get()), Full(reference.get()));

            ChooseSides(tree.get(), reference.get(), random);
            for (const QJsonObject &target : {left, right, random.Mutate(right, depth).toObject()})
                QCOMPARE(Compact(PatchJson(tree.get(), target)), Compact(QuadraticDiff::GenPatch(reference.get(), target)));
        }
    }

    void patchChoices_data()
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
        row("right-only member taken: never added", R"({"a":1})", R"({"a":1,"b":2})", "b", 2, R"({"a":1})");
        row("left-only member given up: never removed", R"({"a":1,"b":2})", R"({"a":1})", "b", 2, R"({"a":1,"b":2})");
        row("left-only number matches no child: appended again", R"({"s":[1]})", R"({"s":[]})", "s", 1, R"({"s":[1,1]})");
        row("elements of the same id follow the first node", R"({"s":[{"id":"a","v":1},{"id":"a","v":3}]})",
            R"({"s":[{"id":"a","v":2}]})", "s/a/v", 2, R"({"s":[{"id":"a","v":2},{"id":"a","v":2}]})");
    }

    void patchChoices()
    {
        QFETCH(QJsonObject, left);
        QFETCH(QJsonObject, right);
        QFETCH(QString, path);
        QFETCH(int, column);
        QFETCH(QJsonObject, expected);
        VantixFeaturesDiffModel model;
        QVERIFY(model.Regenerate(left, right));
        QVERIFY(model.setData(Find(model, path).siblingAtColumn(column), Qt::Checked, Qt::CheckStateRole));
        model.ApplyPatch(left);
        QCOMPARE(Compact(left), Compact(expected));
    }

    void deepNestingOnPoolThread()
    {
        // The parser's own nesting limit; the editor builds diffs on a pool thread.
        const QByteArray open = QByteArray("{\"a\":").repeated(1023);
        const QJsonObject left = Obj(open + "1" + QByteArray(1023, '}'));
        const QJsonObject right = Obj(open + "2" + QByteArray(1023, '}'));
        VantixFeaturesDiffModel model;
        QVERIFY(QtConcurrent::run([&] { return model.Regenerate(left, right); }).result());
        const QModelIndex innermost = Find(model, QStringList(QVector<QString>(1023, "a").toList()).join('/'));
        QVERIFY(model.setData(innermost.siblingAtColumn(2), Qt::Checked, Qt::CheckStateRole));
        QJsonObject patched = left;
        QtConcurrent::run([&] { model.ApplyPatch(patched); }).waitForFinished();
        QCOMPARE(patched, right);
    }

    void tickingNotifiesTopLevelRow()
    {
        VantixFeaturesDiffModel model;
        {
            // The tester only while it loads: a ticked side is announced with an end past the last column.
            QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
            model.Regenerate(Obj(R"({"a":0,"b":0,"n":{"x":1,"y":1,"z":1}})"), Obj(R"({"a":1,"b":1,"n":{"z":2}})"));
        }
        QSignalSpy spy(&model, &QAbstractItemModel::dataChanged);
        // "n/y" is row 1 of "n"; the notification names top-level row 1, ending past the last column.
        const QModelIndex nested = Find(model, "n/y");
        QVERIFY(model.setData(nested.siblingAtColumn(2), true, Qt::CheckStateRole));
        const QList<QVariant> arguments = spy.takeFirst();
        QVERIFY(arguments[0].toModelIndex() == model.index(1, 0) && !arguments[1].toModelIndex().isValid());
        QCOMPARE(arguments[2].value<QVector<int>>(), QVector<int>{Qt::CheckStateRole});
        // A side cannot be unticked, only the other side ticked.
        QVERIFY(model.setData(nested.siblingAtColumn(2), Qt::Unchecked, Qt::CheckStateRole)
                && !model.setData(nested.siblingAtColumn(1), Qt::Checked, Qt::EditRole));
        QCOMPARE(Cells(nested), QStringLiteral("y,~,33 Yes,0,51 No,2,51"));
        // A changed member (1) shows no sides and no boxes; read-only mode hides the boxes, not the flags.
        QCOMPARE(Cells(Find(model, "a")), QStringLiteral("a,~,33 ,~,33 ~,~,33"));
        model.setEditableMode(false);
        QCOMPARE(Cells(nested), QStringLiteral("y,~,33 Yes,~,51 No,~,51"));
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString() + model.headerData(3, Qt::Horizontal).toString(),
                 QStringLiteral("Current/Left"));
    }
};

QTEST_GUILESS_MAIN(DiffEngineTest)
#include "DiffEngineTest.moc"
