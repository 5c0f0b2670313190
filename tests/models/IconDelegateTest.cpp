#include "models/CheckMark.h"
#include "models/IconDelegate.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPointer>
#include <QStandardItemModel>
#include <QStyle>
#include <QTableView>
#include <QTest>

using namespace ProductEditor;

namespace {

class ExposedDelegate : public IconDelegate
{
public:
    using IconDelegate::IconDelegate;
    using IconDelegate::initStyleOption;
};

} // namespace

class IconDelegateTest : public QObject
{
    Q_OBJECT

private slots:
    void iconsAreRegisteredWithTheLibrary_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("check") << ":/check.png";
        QTest::newRow("uncheck") << ":/uncheck.png";
    }
    void iconsAreRegisteredWithTheLibrary()
    {
        QFETCH(QString, path);
        QVERIFY(QFile::exists(path));
        const QImage image(path);
        QCOMPARE(image.size(), QSize(50, 50));
        QVERIFY(image.hasAlphaChannel());
        // Transparent corners, drawn middle.
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QVERIFY(qAlpha(image.pixel(25, 25)) > 0);
    }

    void checkMarkConvention_data()
    {
        QTest::addColumn<bool>("member");
        QTest::newRow("member") << true;
        QTest::newRow("not a member") << false;
    }
    void checkMarkConvention()
    {
        QFETCH(bool, member);
        const QVariant icon = CheckMarkData(member, Qt::DecorationRole);
        QCOMPARE(icon.userType(), qMetaTypeId<QIcon>());
        const QImage drawn = icon.value<QIcon>().pixmap(50, 50).toImage().convertToFormat(
            QImage::Format_ARGB32);
        const QImage expected =
            QImage(member ? ":/check.png" : ":/uncheck.png").convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(drawn, expected);
        QCOMPARE(CheckMarkData(member, Qt::UserRole), QVariant(member));
        QVERIFY(!CheckMarkData(member, Qt::DisplayRole).isValid());
        QVERIFY(!CheckMarkData(member, Qt::EditRole).isValid());
    }

    void geometryWithoutWidgetFillsTheCell_data()
    {
        QTest::addColumn<bool>("withIcon");
        QTest::newRow("icon") << true;
        QTest::newRow("no icon") << false;
    }
    void geometryWithoutWidgetFillsTheCell()
    {
        QFETCH(bool, withIcon);
        QStandardItemModel model(1, 1);
        if (withIcon)
            model.setData(model.index(0, 0), CheckMarkIcon(true), Qt::DecorationRole);
        ExposedDelegate delegate;
        QStyleOptionViewItem option;
        option.rect = QRect(3, 4, 30, 22);
        delegate.initStyleOption(&option, model.index(0, 0));
        QCOMPARE(option.decorationPosition, QStyleOptionViewItem::Top);
        QCOMPARE(option.decorationAlignment, Qt::Alignment(Qt::AlignCenter));
        QCOMPARE(option.decorationSize, QSize(30, 22));
        QCOMPARE(option.features.testFlag(QStyleOptionViewItem::HasDecoration), withIcon);
    }

    void geometryLeavesRoomForTheFocusFrame()
    {
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), CheckMarkIcon(false), Qt::DecorationRole);
        QTableView view;
        view.setModel(&model);
        ExposedDelegate delegate;
        QStyleOptionViewItem option;
        option.initFrom(&view);
        option.widget = &view;
        option.rect = QRect(0, 0, 40, 20);
        delegate.initStyleOption(&option, model.index(0, 0));
        const int margin =
            view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, &view) + 1;
        QCOMPARE(option.decorationSize, QSize(40 - margin, 20 - margin));
    }

    void parentDoesNotOwnTheDelegate()
    {
        auto parent = std::make_unique<QObject>();
        QPointer<IconDelegate> delegate = new IconDelegate(parent.get());
        QCOMPARE(delegate->parent(), nullptr);
        parent.reset();
        QVERIFY(!delegate.isNull());
        delete delegate.data();
    }
};

QTEST_MAIN(IconDelegateTest)
#include "IconDelegateTest.moc"
