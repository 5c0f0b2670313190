#include "ModelsFixture.h"
#include "models/FeaturesModel.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

using namespace ProductEditor;

class FeaturesModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<StoreFixture>();
        m_model = std::make_unique<FeaturesModel>(m_fixture->data());
    }
    void cleanup()
    {
        m_model.reset();
        m_fixture.reset();
    }

    void rowsFollowIdOrder()
    {
        QAbstractItemModelTester tester(m_model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(m_model->rowCount(), 5);
        QCOMPARE(m_model->columnCount(), 9);
        QCOMPARE(ColumnText(*m_model), QStringLiteral("Open,exit,my_feat_1,orphan,save"));
    }

    void headers_data()
    {
        QTest::addColumn<int>("section");
        QTest::addColumn<QVariant>("expected");
        const char *texts[] = {"Id",       "Title",    "Tooltip", "Statustip", "Visible",
                               "Emergrncy", "Products", "Layouts", "Licenses"};
        for (int section = 0; section < 9; ++section)
            QTest::newRow(texts[section]) << section << QVariant(QString::fromLatin1(texts[section]));
        QTest::newRow("past the last is an empty text") << 9 << QVariant(QString());
    }
    void headers()
    {
        QFETCH(int, section);
        QFETCH(QVariant, expected);
        QCOMPARE(m_model->headerData(section, Qt::Horizontal, Qt::DisplayRole), expected);
        QVERIFY(!m_model->headerData(section, Qt::Horizontal, Qt::ToolTipRole).isValid());
    }

    void verticalHeaderCountsRows()
    {
        QCOMPARE(m_model->headerData(2, Qt::Vertical, Qt::DisplayRole).toInt(), 3);
    }

    // "Open" is row 0: products {Base}, layouts {design}, Base grants it {Lic1, 2}.
    void cells_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("row");
        QTest::newRow("display") << int(Qt::DisplayRole)
                                 << "Open|Open file|Opens|Opening|true|false|Base|design|";
        QTest::newRow("edit: the joined lists are not editable")
            << int(Qt::EditRole) << "Open|Open file|Opens|Opening|true|false|-|-|-";
        QTest::newRow("tool tip") << int(Qt::ToolTipRole)
                                  << "Open|Open file|Opens|Opening|true|false|Base|design|";
        QTest::newRow("decoration") << int(Qt::DecorationRole) << "-|-|-|-|-|-|-|-|-";
        QTest::newRow("foreground") << int(Qt::ForegroundRole) << "-|-|-|-|-|-|-|-|-";
    }
    void cells()
    {
        QFETCH(int, role);
        QFETCH(QString, row);
        QString text = RowText(*m_model, 0, role);
        // The licence column joins a set, whose order is free.
        const QVariant licenses = m_model->index(0, 8).data(role);
        if (licenses.isValid()) {
            QCOMPARE(SortedJoin(licenses.toString()), QStringLiteral("2,Lic1"));
            text.chop(licenses.toString().size());
        }
        QCOMPARE(text, row);
        QCOMPARE(m_model->index(0, 4).data(role).userType(),
                 role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole
                     ? int(QMetaType::Bool)
                     : int(QMetaType::UnknownType));
    }

    void joinedListsUseCommaAndBlank()
    {
        // "save": products Base and Base2, layout print, licences of Base2 only.
        QCOMPARE(SortedJoin(m_model->index(4, 6).data().toString()), QStringLiteral("Base,Base2"));
        QVERIFY(m_model->index(4, 6).data().toString().contains(QStringLiteral(", ")));
        QVERIFY(!m_model->index(4, 6).data().toString().endsWith(QStringLiteral(", ")));
        QCOMPARE(m_model->index(4, 8).data().toString(), QStringLiteral("Lic1"));
        QCOMPARE(m_model->index(3, 6).data().toString(), QString());
        QVERIFY(m_model->index(3, 6).data().isValid());
    }

    void invalidIndexes()
    {
        QVERIFY(!m_model->data(QModelIndex()).isValid());
        QVERIFY(!m_model->setData(QModelIndex(), QStringLiteral("x")));
        QVERIFY(!m_model->setData(m_model->index(0, 1), QStringLiteral("x"), Qt::DisplayRole));
        QCOMPARE(m_fixture->data().GetFeatures().value("Open").title, QStringLiteral("Open file"));
    }

    void edits_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("row");
        // Row 4 is "save".
        QTest::newRow("title") << 1 << QVariant("Store") << true
                               << "save|Store|||true|true";
        QTest::newRow("tooltip") << 2 << QVariant("Stores") << true << "save|Save|Stores||true|true";
        QTest::newRow("status tip") << 3 << QVariant("Storing") << true
                                    << "save|Save||Storing|true|true";
        QTest::newRow("visible from text") << 4 << QVariant("false") << true
                                           << "save|Save|||false|true";
        QTest::newRow("emergency from int") << 5 << QVariant(0) << true
                                            << "save|Save|||true|false";
        QTest::newRow("title equal to the own id is refused")
            << 1 << QVariant("save") << false << "save|Save|||true|true";
        QTest::newRow("tooltip equal to the own id is refused")
            << 2 << QVariant("save") << false << "save|Save|||true|true";
        QTest::newRow("products column accepts and keeps") << 6 << QVariant("x") << true
                                                           << "save|Save|||true|true";
        QTest::newRow("licences column accepts and keeps") << 8 << QVariant("x") << true
                                                           << "save|Save|||true|true";
    }
    void edits()
    {
        QFETCH(int, column);
        QFETCH(QVariant, value);
        QFETCH(bool, accepted);
        QFETCH(QString, row);
        QAbstractItemModelTester tester(m_model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(changed.isValid());
        const QModelIndex index = m_model->index(4, column);
        QCOMPARE(m_model->setData(index, value), accepted);
        QCOMPARE(RowText(*m_model, 4).section(QLatin1Char('|'), 0, 5), row);
        if (accepted) {
            QCOMPARE(changed.count(), 1);
            QCOMPARE(changed.at(0).at(0).toModelIndex(), index);
            QCOMPARE(changed.at(0).at(1).toModelIndex(), index);
            QCOMPARE(changed.at(0).at(2).value<QVector<int>>(), QVector<int>());
        } else {
            QCOMPARE(changed.count(), 0);
        }
    }

    void renameMovesTheRow()
    {
        QAbstractItemModelTester tester(m_model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
        const VantixFeatureData before = m_fixture->data().GetFeatures().value("save");

        QVERIFY(m_model->setData(m_model->index(4, 0), QStringLiteral("Alpha")));

        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 4);
        QCOMPARE(removed.at(0).at(2).toInt(), 4);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.at(0).at(1).toInt(), 0);
        QCOMPARE(inserted.at(0).at(2).toInt(), 0);
        // The change is reported at the old row.
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toModelIndex().row(), 4);
        QCOMPARE(ColumnText(*m_model), QStringLiteral("Alpha,Open,exit,my_feat_1,orphan"));
        const VantixFeatureData after = m_fixture->data().GetFeatures().value("Alpha");
        QCOMPARE(after.title, before.title);
        QCOMPARE(after.emergency, before.emergency);
        QCOMPARE(after.productIds, before.productIds);
        QCOMPARE(after.layoutNames, before.layoutNames);
        QVERIFY(!m_fixture->data().GetFeatures().contains("save"));
        // Licences granted under the old id stay where they were.
        QCOMPARE(m_fixture->data().GetProducts().products.at(1).specificLicenses.keys(),
                 QStringList{"save"});
    }

    void renameBeforeItselfKeepsTheRow()
    {
        StoreFixture fixture(R"({"features": {"feature": [{"id": "B", "title": "b"}, {"id": "C"}]}})",
                             QByteArray());
        FeaturesModel model(fixture.data());
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QVERIFY(model.setData(model.index(0, 0), QStringLiteral("A")));
        QCOMPARE(removed.at(0).at(1).toInt(), 0);
        QCOMPARE(inserted.at(0).at(1).toInt(), 0);
        QCOMPARE(RowText(model, 0).left(3), QStringLiteral("A|b"));
    }

    void renameToAnExistingIdShowsTheToolTip()
    {
        QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(!m_model->setData(m_model->index(4, 0), QStringLiteral("exit")));
        QCOMPARE(QToolTip::text(), QStringLiteral("This ID is already exist"));
        QToolTip::hideText();
        QCOMPARE(removed.count(), 0);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(m_fixture->data().GetFeatures().value("save").title, QStringLiteral("Save"));
        QCOMPARE(m_fixture->data().GetFeatures().value("exit").title, QStringLiteral("Exit"));
    }

    // The tester is left out: a second insertion announces a row that is not added.
    void insertAddsOneUnnumberedFeature()
    {
        QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
        QVERIFY(m_model->insertRows(3, 7));
        QVERIFY(m_model->insertRows(0, 1));
        QCOMPARE(inserted.count(), 2);
        for (const QList<QVariant> &arguments : inserted) {
            QCOMPARE(arguments.at(1).toInt(), 0);
            QCOMPARE(arguments.at(2).toInt(), 0);
        }
        QCOMPARE(m_model->rowCount(), 6);
        QCOMPARE(RowText(*m_model, 0), QStringLiteral("New_Feature||||true|false|||"));
    }

    void removeTakesOneRowAndAnswersFalse()
    {
        QAbstractItemModelTester tester(m_model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
        QVERIFY(!m_model->removeRows(1, 3));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 1);
        QCOMPARE(removed.at(0).at(2).toInt(), 1);
        QCOMPARE(ColumnText(*m_model), QStringLiteral("Open,my_feat_1,orphan,save"));
        // Nothing past the end is touched or announced.
        QVERIFY(!m_model->removeRows(4, 1));
        QVERIFY(!m_model->removeRows(-1, 1));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(m_model->rowCount(), 4);
    }

    void storeRebuildResetsTheModel()
    {
        QAbstractItemModelTester tester(m_model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy aboutToReset(m_model.get(), &QAbstractItemModel::modelAboutToBeReset);
        QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
        QVERIFY(m_fixture->data().DuplicateFeatureFrom("exit", "exit2"));
        QCOMPARE(aboutToReset.count(), 1);
        QCOMPARE(reset.count(), 1);
        QCOMPARE(ColumnText(*m_model), QStringLiteral("Open,exit,exit2,my_feat_1,orphan,save"));
        // Product changes are not followed.
        QVERIFY(m_fixture->data().DuplicateProductFrom("Base", "Base3"));
        QCOMPARE(reset.count(), 1);
    }

    void destroyedModelLeavesTheStoreSignalsFree()
    {
        m_model.reset();
        QVERIFY(m_fixture->data().DuplicateFeatureFrom("exit", "exit2"));
    }

private:
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<FeaturesModel> m_model;
};

QTEST_MAIN(FeaturesModelTest)
#include "FeaturesModelTest.moc"
