#include "json/QJsonTreeItem.h"
#include "json/QSmartJsonModel.h"
#include "json/VantixResultModel.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

using namespace ProductEditor;

namespace {

// "key:type=value" per row, children in parentheses, walked through the model.
QString Rows(const QAbstractItemModel &model, const QModelIndex &parent = QModelIndex())
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex key = model.index(row, 0, parent);
        const auto *node = static_cast<const QJsonTreeItem *>(key.internalPointer());
        rows << QStringLiteral("%1:%2=%3").arg(key.data().toString()).arg(node->type())
                    .arg(key.siblingAtColumn(1).data().toString())
                + (model.rowCount(key) ? QLatin1Char('(') + Rows(model, key) + QLatin1Char(')') : QString());
    }
    return rows.join(QLatin1Char(' '));
}

} // namespace

class JsonTreeModelTest : public QObject
{
    Q_OBJECT

private slots:
    void loadEditAndRefuse()
    {
        QSmartJsonModel model(QByteArray(R"({"b":1,"a":[true,"x"],"o":{}})"));
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(Rows(model), QStringLiteral("a:4=(0:1=true 1:3=x) b:2=1 o:5="));
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString() + model.headerData(2, Qt::Horizontal).toString(), "Value");
        // Only scalar values are editable.
        QVERIFY(!((model.flags(model.index(0, 1)) | model.flags(model.index(1, 0))) & Qt::ItemIsEditable)
                && (model.flags(model.index(1, 1)) & Qt::ItemIsEditable));

        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy reset(&model, &QAbstractItemModel::modelAboutToBeReset);
        const QModelIndex b = model.index(1, 1);
        QVERIFY(model.setData(b, 2));
        const QVariantList arguments = changed.takeFirst();
        QVERIFY(arguments[0].toModelIndex() == b && arguments[1].toModelIndex() == b);
        QCOMPARE(arguments[2].value<QVector<int>>(), QVector<int>{Qt::EditRole});
        QCOMPARE(model.json().object().value("b"), QJsonValue(QStringLiteral("2"))); // the type stays Double
        QVERIFY(!model.setData(b, 3, Qt::DisplayRole));
        QVERIFY(!model.setData(b.siblingAtColumn(0), "k"));
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("cannot load json"));
        QVERIFY(!model.loadJson("{\"a\":"));
        QCOMPARE(changed.count() + reset.count(), 0);
        QCOMPARE(Rows(model), QStringLiteral("a:4=(0:1=true 1:3=x) b:2=2 o:5="));
    }

    void serialisation_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("numbers, booleans and null come back as strings")
            << QByteArray(R"({"n":12,"f":1.5,"t":true,"z":null})") << QByteArray(R"({"f":"1.5","n":"12","t":"true","z":""})");
        QTest::newRow("top-level array") << QByteArray(R"([1,{"a":"b"}])") << QByteArray(R"(["1",{"a":"b"}])");
        QTest::newRow("byte-order mark before the object") << QByteArray("\xEF\xBB\xBF{\"a\":1}") << QByteArray(R"({"a":"1"})");
        QTest::newRow("nesting at the parser's limit") << QByteArray(1024, '[') + QByteArray(1024, ']')
                                                       << QByteArray(1024, '[') + QByteArray(1024, ']');
    }
    void serialisation()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, written);
        QCOMPARE(QSmartJsonModel(json).json().toJson(QJsonDocument::Compact), written);
    }


    // The result tree is built a level at a time; walked whole it is the eager tree.
    void resultModelBuildsLevelsOnDemand()
    {
        VantixResultModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        model.SetJson(QJsonObject{{"id", "p"}, {"n", 3}, {"l", QJsonArray{"a", QJsonObject{{"b", false}}}}});
        QCOMPARE(reset.count(), 1);
        QCOMPARE(Rows(model), QStringLiteral("id:3=p l:4=(0:3=a 1:5=(b:1=false)) n:2=3"));
        QCOMPARE(model.GetJson(), (QJsonObject{{"id", "p"}, {"n", "3"}, {"l", QJsonArray{"a", QJsonObject{{"b", "false"}}}}}));
        model.SetJson(QJsonObject{{"deep", QJsonObject{{"x", 1}}}});
        QCOMPARE(model.GetJson(), (QJsonObject{{"deep", QJsonObject{{"x", "1"}}}}));
    }
};

QTEST_GUILESS_MAIN(JsonTreeModelTest)
#include "JsonTreeModelTest.moc"
