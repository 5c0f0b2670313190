#include "store/JsonText.h"

#include <QJsonArray>
#include <QTest>

using namespace ProductEditor;

// What is written and shown for a number must not depend on the Qt the program is built
// with; the expected texts are what Qt 5.15 writes.
class JsonTextTest : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<QString>("shown");
        QTest::newRow("small integer") << QByteArray("42") << QByteArray("42") << "42";
        QTest::newRow("fraction") << QByteArray("-1.5") << QByteArray("-1.5") << "-1.5";
        QTest::newRow("integer past 2^53") << QByteArray("9007199254740993") << QByteArray("9007199254740992")
                                           << "9007199254740993";
        QTest::newRow("lowest 64-bit integer") << QByteArray("-9223372036854775808")
                                               << QByteArray("-9223372036854776000") << "-9223372036854775808";
        QTest::newRow("past 64 bits") << QByteArray("12345678901234567890") << QByteArray("12345678901234567000")
                                      << "12345678901234567000";
        QTest::newRow("exponent below 2^64") << QByteArray("1.2e19") << QByteArray("12000000000000000000")
                                             << "1.2e+19";
        QTest::newRow("exponent past 2^64") << QByteArray("1e20") << QByteArray("1e+20") << "1e+20";
        QTest::newRow("long mantissa past 2^64") << QByteArray("864020679701687731322")
                                                 << QByteArray("864020679701687700000") << "864020679701687700000";
        QTest::newRow("four decimals") << QByteArray("8e-4") << QByteArray("0.0008") << "0.0008";
        QTest::newRow("five decimals") << QByteArray("-1e-5") << QByteArray("-1e-05") << "-1e-05";
    }

    void numbers()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, written);
        QFETCH(QString, shown);
        const QJsonArray array = QJsonDocument::fromJson("[" + json + "]").array();
        QCOMPARE(JsonText(QJsonDocument(array), QJsonDocument::Compact), "[" + written + "]");
        QCOMPARE(JsonValueText(array.at(0)), shown);
    }

    void stringsStayAsTheyAre()
    {
        const QJsonArray array{QStringLiteral("1e+20 \\\" 9007199254740993"), 9007199254740993LL};
        QCOMPARE(JsonText(QJsonDocument(array), QJsonDocument::Indented),
                 QByteArray("[\n    \"1e+20 \\\\\\\" 9007199254740993\",\n    9007199254740992\n]\n"));
    }
};

QTEST_GUILESS_MAIN(JsonTextTest)
#include "JsonTextTest.moc"
