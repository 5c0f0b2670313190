#include "ModelsFixture.h"
#include "models/ExtensionsLayoutModel.h"
#include "models/ExtensionsLicenseModel.h"
#include "models/ExtensionsLicenseProxyModel.h"
#include "models/ExtensionsModel.h"
#include "models/ExtensionsProductModel.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QColor>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

using namespace ProductEditor;

namespace {

QString Headers(const QAbstractItemModel &model)
{
    QStringList texts;
    for (int section = 0; section < model.columnCount(); ++section)
        texts << model.headerData(section, Qt::Horizontal).toString();
    return texts.join(QLatin1Char('|'));
}

} // namespace

class ExtensionsModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<StoreFixture>(); }
    void cleanup() { m_fixture.reset(); }

    // --- the extensions table

    void extensionsTable()
    {
        ExtensionsModel model(m_fixture->data());
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(Headers(model), QStringLiteral("Id|Title|Extension|Cad support|Multiple parts "
                                                "support|Slices support|Load as part"));
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(RowText(model, 0), QStringLiteral("obj|OBJ|.obj|false|false|true|false"));
        QCOMPARE(RowText(model, 1, Qt::EditRole),
                 QStringLiteral("stl|STL|.stl|true|false|false|false"));
        QCOMPARE(RowText(model, 1, Qt::ToolTipRole), RowText(model, 1));
        QCOMPARE(RowText(model, 1, Qt::DecorationRole), QStringLiteral("-|-|-|-|-|-|-"));
        QCOMPARE(model.index(1, 3).data().userType(), int(QMetaType::Bool));
    }

    void extensionEdits_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("row");
        QTest::newRow("title") << 1 << QVariant("Stereo") << true
                               << "stl|Stereo|.stl|true|false|false|false";
        QTest::newRow("pattern") << 2 << QVariant("*.stl") << true
                                 << "stl|STL|*.stl|true|false|false|false";
        QTest::newRow("cad") << 3 << QVariant(false) << true
                             << "stl|STL|.stl|false|false|false|false";
        QTest::newRow("multiple parts") << 4 << QVariant(true) << true
                                        << "stl|STL|.stl|true|true|false|false";
        QTest::newRow("slices") << 5 << QVariant(true) << true
                                << "stl|STL|.stl|true|false|true|false";
        QTest::newRow("load as part") << 6 << QVariant(true) << true
                                      << "stl|STL|.stl|true|false|false|true";
        QTest::newRow("title equal to the own id is refused")
            << 1 << QVariant("stl") << false << "stl|STL|.stl|true|false|false|false";
        QTest::newRow("pattern equal to the own id is refused")
            << 2 << QVariant("stl") << false << "stl|STL|.stl|true|false|false|false";
    }
    void extensionEdits()
    {
        QFETCH(int, column);
        QFETCH(QVariant, value);
        QFETCH(bool, accepted);
        QFETCH(QString, row);
        ExtensionsModel model(m_fixture->data());
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QCOMPARE(model.setData(model.index(1, column), value), accepted);
        QCOMPARE(model.setData(model.index(1, column), value, Qt::DisplayRole), false);
        QCOMPARE(RowText(model, 1), row);
        QCOMPARE(changed.count(), accepted ? 1 : 0);
        if (accepted)
            QCOMPARE(changed.at(0).at(0).toModelIndex(), model.index(1, column));
    }

    void extensionRename()
    {
        ExtensionsModel model(m_fixture->data());
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QVERIFY(model.setData(model.index(0, 0), QStringLiteral("zip")));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 0);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.at(0).at(1).toInt(), 1);
        QCOMPARE(ColumnText(model), QStringLiteral("stl,zip"));
        QCOMPARE(m_fixture->data().GetExtensions().value("zip").exportLicenses,
                 QSet<QString>{"B"});

        QVERIFY(!model.setData(model.index(1, 0), QStringLiteral("stl")));
        QCOMPARE(QToolTip::text(), QStringLiteral("This ID is already exist"));
        QToolTip::hideText();
        QCOMPARE(ColumnText(model), QStringLiteral("stl,zip"));
    }

    // The tester is left out: a second insertion announces a row that is not added.
    void extensionInsertIsUnnumbered()
    {
        ExtensionsModel model(m_fixture->data());
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QVERIFY(model.insertRows(5, 2));
        QVERIFY(model.setData(model.index(0, 2), QStringLiteral(".changed")));
        QVERIFY(model.insertRows(0, 1));
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(inserted.at(1).at(1).toInt(), 0);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(RowText(model, 0), QStringLiteral("extension||.extension|false|false|false|false"));
    }

    void extensionRemoveCleansProductsAndLayouts()
    {
        ExtensionsModel model(m_fixture->data());
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QVERIFY(!model.removeRows(1, 2));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 1);
        QCOMPARE(ColumnText(model), QStringLiteral("obj"));
        VantixJsonData &data = m_fixture->data();
        QVERIFY(!data.GetProducts().products.at(0).extensions.import.contains("stl"));
        QCOMPARE(data.GetProducts().products.at(0).extensions.open, QSet<QString>{"obj"});
        QVERIFY(data.GetLayouts().value("design").export_.isEmpty());
        QVERIFY(!model.removeRows(1, 1));
        QCOMPARE(removed.count(), 1);
    }

    // --- products and layouts against the current extension

    void accessTablesWithoutCurrentExtension()
    {
        ExtensionsProductModel products(m_fixture->data());
        QAbstractItemModelTester tester(&products,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(products.rowCount(), 3);
        QCOMPARE(products.columnCount(), 8);
        QCOMPARE(RowText(products, 0), QStringLiteral("-|-|-|-|-|-|-|-"));
        QCOMPARE(RowText(products, 0, Qt::UserRole), QStringLiteral("-|-|-|-|-|-|-|-"));
        QCOMPARE(Headers(products),
                 QStringLiteral("Product|Export|Export\nproject|Import|Import\nproject|Export\nscene|Open|"));
        ExtensionsLayoutModel layouts(m_fixture->data());
        QCOMPARE(layouts.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Layout"));
        QVERIFY(!layouts.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
    }

    void accessTablesShowTheCurrentExtension_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("names");
        QTest::addColumn<QStringList>("marks");
        QTest::newRow("products, stl") << false << "stl" << "Base,Base2,ab"
                                       << QStringList{"-|false|false|true|false|false|true|-",
                                                      "-|false|false|false|false|false|false|-",
                                                      "-|false|false|false|false|false|false|-"};
        QTest::newRow("products, obj") << false << "obj" << "Base,Base2,ab"
                                       << QStringList{"-|false|false|false|false|false|true|-",
                                                      "-|false|false|false|false|false|false|-",
                                                      "-|false|false|false|false|false|false|-"};
        QTest::newRow("layouts, stl") << true << "stl" << "design,print"
                                      << QStringList{"-|true|false|false|false|false|false|-",
                                                     "-|false|false|false|false|false|false|-"};
        QTest::newRow("layouts, obj") << true << "obj" << "design,print"
                                      << QStringList{"-|false|false|false|false|false|false|-",
                                                     "-|false|false|true|false|false|false|-"};
    }
    void accessTablesShowTheCurrentExtension()
    {
        QFETCH(bool, layouts);
        QFETCH(QString, extension);
        QFETCH(QString, names);
        QFETCH(QStringList, marks);
        std::unique_ptr<ExtensionsBaseModel> model;
        if (layouts)
            model = std::make_unique<ExtensionsLayoutModel>(m_fixture->data());
        else
            model = std::make_unique<ExtensionsProductModel>(m_fixture->data());
        QAbstractItemModelTester tester(model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(model.get(), &QAbstractItemModel::dataChanged);
        model->SetCurrentExtension(extension);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toModelIndex(), model->index(0, 0));
        QCOMPARE(changed.at(0).at(1).toModelIndex(), model->index(model->rowCount() - 1, 7));
        QCOMPARE(changed.at(0).at(2).value<QVector<int>>(), QVector<int>());
        QCOMPARE(ColumnText(*model), names);
        for (int row = 0; row < marks.size(); ++row)
            QCOMPARE(RowText(*model, row, Qt::UserRole), marks.at(row));
        QCOMPARE(model->index(0, 1).data(Qt::DecorationRole).userType(), qMetaTypeId<QIcon>());
        QVERIFY(!model->index(0, 1).data(Qt::DisplayRole).isValid());
        QVERIFY(!model->index(0, 0).data(Qt::EditRole).isValid());
    }

    void accessToggles_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<bool>("value");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("base2Sets");
        QTest::newRow("export on") << 1 << true << true << "export";
        QTest::newRow("export project on") << 2 << true << true << "export_as_project";
        QTest::newRow("import on") << 3 << true << true << "import";
        QTest::newRow("import project on") << 4 << true << true << "import_as_project";
        QTest::newRow("export scene on") << 5 << true << true << "export_as_scene";
        QTest::newRow("open on") << 6 << true << true << "open";
        QTest::newRow("name column refused") << 0 << true << false << "";
        QTest::newRow("column 7 accepted, nothing kept") << 7 << true << true << "";
    }
    void accessToggles()
    {
        QFETCH(int, column);
        QFETCH(bool, value);
        QFETCH(bool, accepted);
        QFETCH(QString, base2Sets);
        ExtensionsProductModel model(m_fixture->data());
        model.SetCurrentExtension(QStringLiteral("stl"));
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        const QModelIndex index = model.index(1, column);
        QCOMPARE(model.setData(index, value), accepted);
        QCOMPARE(changed.count(), accepted ? 1 : 0);
        const ExtensionAccess &access = m_fixture->data().GetProducts().products.at(1).extensions;
        const QList<QPair<QString, const QSet<QString> *>> sets = {
            {"export", &access.export_},       {"export_as_project", &access.export_as_project},
            {"import", &access.import},        {"import_as_project", &access.import_as_project},
            {"export_as_scene", &access.export_as_scene}, {"open", &access.open}};
        QStringList holding;
        for (const auto &set : sets) {
            if (set.second->contains("stl"))
                holding << set.first;
        }
        QCOMPARE(holding.join(','), base2Sets);
        if (column >= 1 && column <= 6) {
            QCOMPARE(index.data(Qt::UserRole), QVariant(true));
            QVERIFY(model.setData(index, false));
            QCOMPARE(index.data(Qt::UserRole), QVariant(false));
        }
    }

    void layoutToggleWritesTheLayout()
    {
        ExtensionsLayoutModel model(m_fixture->data());
        model.SetCurrentExtension(QStringLiteral("obj"));
        QVERIFY(model.setData(model.index(0, 6), true));
        QCOMPARE(m_fixture->data().GetLayouts().value("design").open, QSet<QString>{"obj"});
        QVERIFY(model.setData(model.index(1, 3), false));
        QVERIFY(m_fixture->data().GetLayouts().value("print").import.isEmpty());
        QVERIFY(!model.setData(model.index(1, 3), true, Qt::DisplayRole));
        QVERIFY(m_fixture->data().GetLayouts().value("print").import.isEmpty());
    }

    void writeWithoutCurrentExtensionUsesTheEmptyId()
    {
        ExtensionsProductModel model(m_fixture->data());
        QVERIFY(model.setData(model.index(2, 6), true));
        QCOMPARE(m_fixture->data().GetProducts().products.at(2).extensions.open,
                 QSet<QString>{QString()});
        ExtensionsLicenseModel licenses(m_fixture->data());
        QVERIFY(licenses.setData(licenses.index(0, 2), true));
        QCOMPARE(m_fixture->data().GetExtensions().value(QString()).importLicenses,
                 QSet<QString>{"10"});
    }

    // --- licences against the current extension

    void licenceTable()
    {
        ExtensionsLicenseModel model(m_fixture->data());
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(Headers(model), QStringLiteral("Id|Name|Import|Export"));
        QCOMPARE(RowText(model, 0), QStringLiteral("-|-|-|-"));
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        model.SetCurrentExtension(QStringLiteral("stl"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(1).toModelIndex(), model.index(3, 3));
        QCOMPARE(ColumnText(model), QStringLiteral("10,2,B,Lic1"));
        QCOMPARE(RowText(model, 0), QStringLiteral("10|Ten|-|-"));
        QCOMPARE(RowText(model, 0, Qt::ToolTipRole), QStringLiteral("10|Ten|-|-"));
        QCOMPARE(RowText(model, 0, Qt::UserRole), QStringLiteral("-|-|true|false"));
        QCOMPARE(RowText(model, 2, Qt::UserRole), QStringLiteral("-|-|false|false"));
        QCOMPARE(model.index(0, 2).data(Qt::DecorationRole).userType(), qMetaTypeId<QIcon>());
        QCOMPARE(model.index(0, 0).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::black));
        QCOMPARE(model.index(2, 3).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::gray));
    }

    void licenceToggles()
    {
        ExtensionsLicenseModel model(m_fixture->data());
        model.SetCurrentExtension(QStringLiteral("stl"));
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QVERIFY(model.setData(model.index(2, 3), true));
        QVERIFY(model.setData(model.index(0, 2), false));
        QVERIFY(!model.setData(model.index(0, 1), true));
        QVERIFY(!model.setData(model.index(0, 0), true));
        QVERIFY(!model.setData(model.index(0, 2), true, Qt::DisplayRole));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.at(0).at(0).toModelIndex(), model.index(2, 3));
        const ExtensionInfo &stl = m_fixture->data().GetExtensions()["stl"];
        QCOMPARE(stl.exportLicenses, QSet<QString>{"B"});
        QCOMPARE(stl.importLicenses, QSet<QString>{"2"});
        QCOMPARE(model.index(2, 0).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::black));
    }

    void unknownCurrentExtensionIsCreatedOnRead()
    {
        ExtensionsLicenseModel model(m_fixture->data());
        model.SetCurrentExtension(QStringLiteral("step"));
        QCOMPARE(RowText(model, 0, Qt::UserRole), QStringLiteral("-|-|false|false"));
        QVERIFY(m_fixture->data().GetExtensions().contains("step"));
    }

    void licenceSort_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("order");
        // Import users, then export users, then the rest; names compare as numbers.
        QTest::newRow("stl: 2 before 10 as numbers") << "stl" << "2,10,B,Lic1";
        QTest::newRow("obj: words count as 0") << "obj" << "B,Lic1,2,10";
        QTest::newRow("no current extension: all tie") << "" << "10,2,B,Lic1";
    }
    void licenceSort()
    {
        QFETCH(QString, extension);
        QFETCH(QString, order);
        ExtensionsLicenseModel source(m_fixture->data());
        ExtensionsLicenseProxyModel proxy;
        proxy.setSourceModel(&source);
        QAbstractItemModelTester tester(&proxy,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        source.SetCurrentExtension(extension);
        proxy.invalidate();
        proxy.sort(1);
        // Without a current extension the table shows no names; take them from the store.
        const QStringList keys = m_fixture->data().GetLicenses().keys();
        QStringList names;
        for (int row = 0; row < proxy.rowCount(); ++row)
            names << keys.at(proxy.mapToSource(proxy.index(row, 0)).row());
        QCOMPARE(names.join(','), order);
    }

private:
    std::unique_ptr<StoreFixture> m_fixture;
};

QTEST_MAIN(ExtensionsModelsTest)
#include "ExtensionsModelsTest.moc"
