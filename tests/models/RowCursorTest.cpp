#include "ModelsFixture.h"
#include "models/FeaturesModel.h"
#include "models/RowCursor.h"

#include <QApplication>
#include <QTest>

using namespace ProductEditor;

namespace {

using Cursor = MapRowCursor<QString, int>;

QMap<QString, int> Numbers(int count, const QString &prefix = QStringLiteral("k"))
{
    QMap<QString, int> map;
    for (int i = 0; i < count; ++i)
        map.insert(prefix + QString::number(i).rightJustified(3, QLatin1Char('0')), i);
    return map;
}

QString KeyAt(Cursor &cursor, const QMap<QString, int> &map, int row)
{
    const auto it = cursor.At(map, row);
    return it == map.constEnd() ? QStringLiteral("<end>") : it.key();
}

} // namespace

class RowCursorTest : public QObject
{
    Q_OBJECT

private slots:
    void anyOrderOfAccessIsExact_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::newRow("forward") << QList<int>{0, 1, 2, 3, 50, 51, 99};
        QTest::newRow("backward") << QList<int>{99, 98, 60, 3, 0};
        QTest::newRow("jumps") << QList<int>{40, 2, 97, 41, 41, 0, 70};
    }
    void anyOrderOfAccessIsExact()
    {
        QFETCH(QList<int>, rows);
        const QMap<QString, int> map = Numbers(100);
        const QStringList keys = map.keys();
        Cursor cursor;
        for (int row : rows)
            QCOMPARE(KeyAt(cursor, map, row), keys.at(row));
    }

    void rowsPastTheEndAreNone()
    {
        const QMap<QString, int> map = Numbers(3);
        Cursor cursor;
        QCOMPARE(KeyAt(cursor, map, 3), QStringLiteral("<end>"));
        QCOMPARE(KeyAt(cursor, map, -1), QStringLiteral("<end>"));
        QCOMPARE(KeyAt(cursor, QMap<QString, int>(), 0), QStringLiteral("<end>"));
    }

    void changesElsewhereAreNoticed_data()
    {
        QTest::addColumn<int>("change");
        QTest::newRow("insertion before the cursor") << 0;
        QTest::newRow("removal before the cursor") << 1;
        QTest::newRow("whole map replaced, same size") << 2;
        QTest::newRow("key swap announced by a model") << 3;
        QTest::newRow("map detached from a copy") << 4;
    }
    void changesElsewhereAreNoticed()
    {
        QFETCH(int, change);
        QMap<QString, int> map = Numbers(20);
        Cursor cursor;
        QCOMPARE(KeyAt(cursor, map, 10), QStringLiteral("k010"));
        QMap<QString, int> copy;
        switch (change) {
        case 0:
            map.insert(QStringLiteral("a"), -1);
            break;
        case 1:
            map.remove(QStringLiteral("k003"));
            break;
        case 2:
            map = Numbers(20, QStringLiteral("j"));
            break;
        case 3:
            map.remove(QStringLiteral("k003"));
            map.insert(QStringLiteral("k0155"), -1);
            BumpRowEpoch();
            break;
        case 4:
            copy = map;
            map[QStringLiteral("k000")] = 7;
            copy.clear();
            break;
        }
        const QStringList keys = map.keys();
        for (int row : {11, 10, 0, int(map.size()) - 1})
            QCOMPARE(KeyAt(cursor, map, row), keys.at(row));
    }

    void modelsSeeEachOthersRenames()
    {
        StoreFixture fixture;
        FeaturesModel first(fixture.data());
        FeaturesModel second(fixture.data());
        QCOMPARE(ColumnText(second), QStringLiteral("Open,exit,my_feat_1,orphan,save"));
        QCOMPARE(second.index(3, 0).data().toString(), QStringLiteral("orphan"));
        // Same size afterwards: only the announcement tells the other model.
        QVERIFY(first.setData(first.index(0, 0), QStringLiteral("pen")));
        QCOMPARE(second.index(3, 0).data().toString(), QStringLiteral("pen"));
        QCOMPARE(ColumnText(second), QStringLiteral("exit,my_feat_1,orphan,pen,save"));
    }

    void modelsSeeEditsThroughTheStore()
    {
        StoreFixture fixture;
        FeaturesModel model(fixture.data());
        QCOMPARE(model.index(4, 0).data().toString(), QStringLiteral("save"));
        fixture.data().GetFeatures().insert(QStringLiteral("Aaa"), VantixFeatureData());
        QCOMPARE(ColumnText(model), QStringLiteral("Aaa,Open,exit,my_feat_1,orphan,save"));
        const QModelIndex last = model.index(5, 1);
        fixture.data().GetFeatures().remove(QStringLiteral("exit"));
        fixture.data().GetFeatures().remove(QStringLiteral("save"));
        QCOMPARE(model.index(3, 0).data().toString(), QStringLiteral("orphan"));
        // An index kept from before now points past the end.
        QVERIFY(!last.data().isValid());
        QVERIFY(!model.setData(last, QStringLiteral("x")));
        QVERIFY(!model.removeRows(last.row(), 1));
        QCOMPARE(model.rowCount(), 4);
    }
};

QTEST_MAIN(RowCursorTest)
#include "RowCursorTest.moc"
